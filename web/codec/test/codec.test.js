// The module in Node: the recorded bytes and pixels, and what its border adds.
import assert from "node:assert/strict";
import { createHash } from "node:crypto";
import { readFileSync } from "node:fs";
import { test } from "node:test";
import { load, MaroviaError, wavelets } from "marovia";
import { namedImage } from "./named_images.js";

const data = new URL("../../../tests/data/", import.meta.url);
const marovia = await load();
const camera = marovia.readImage(readFileSync(new URL("../../../Images/camera.pgm", import.meta.url)));

const sha256 = (bytes) => createHash("sha256").update(bytes).digest("hex");

function rowsOf(table) {
  const [head, ...lines] = readFileSync(new URL(table, data), "utf8").trimEnd().split("\n");
  const names = head.split("\t");
  return lines.map((line) => {
    const cells = line.split("\t");
    return { line, ...Object.fromEntries(names.map((name, i) => [name, cells[i]])) };
  });
}

const imageOf = (row) => namedImage(row.image, +row.rows, +row.cols);

// As many whole bits for each row, ties to even.
function bitsOfARow(row, part = 1) {
  const bits = row.cols * row.rate * part;
  const below = Math.floor(bits);
  return bits - below === 0.5 ? below + (below % 2) : Math.round(bits);
}

function optionsOf(row) {
  const options = { kind: row.extension, wavelet: wavelets[row.wavelet - 1], levels: +row.levels };
  if (row.roi && row.roi !== "-") {
    const [row1, col1, row2, col2] = row.roi.split(",").map(Number);
    Object.assign(options, { region: { row1, col1, row2, col2 }, share: +row.share });
  }
  return { ...options, rate: bitsOfARow(row) / row.cols, pad: false };
}

const pixels = (row, file, part = 1) =>
  sha256(marovia.decode(file, row.extension, { rate: bitsOfARow(row, part) / row.cols }).samples);

test("gives the recorded files and pictures", () => {
  for (const row of rowsOf("expected_results.tsv")) {
    const { file } = marovia.encode(imageOf(row), optionsOf(row));
    assert.equal(sha256(file), row.sha256_file, row.line);
    assert.equal(pixels(row, file), row.sha256_pixels, row.line);
    if (row.sha256_pixels_half_rate !== "-")
      assert.equal(pixels(row, file, 0.5), row.sha256_pixels_half_rate, row.line);
  }
  for (const row of rowsOf("cut_files.tsv")) {
    const { file } = marovia.encode(imageOf(row), optionsOf(row));
    assert.equal(pixels(row, file.subarray(0, row.bytes_kept)), row.sha256_pixels, row.line);
  }
});

test("fails with a status and a sentence, and works on after it", () => {
  const { file } = marovia.encode(camera, { bytes: 2000 });
  const failures = [
    ["invalid-argument", /rate is/, () => marovia.encode(camera, { rate: -1 })],
    ["invalid-argument", /"xyz"/, () => marovia.decode(file, "xyz")],
    ["invalid-argument", /has 3 samples/, () => marovia.encode({ ...camera, samples: Uint8Array.of(1, 2, 3) })],
    ["index", /./, () => marovia.measure(camera, namedImage("black", 8, 8))],
    ["malformed", /./, () => marovia.decode(Uint8Array.of(1, 2, 3), "awf")],
    ["malformed", /./, () => marovia.exploreFile(new Uint8Array(40), "awg")],
    ["unsupported", /PNG/, () => marovia.readImage(Buffer.from("\x89PNG\r\n\x1a\n0000", "latin1"))],
    ["limit", /./, () => marovia.decode(file, "awf", { maxPixels: 100 })],
    ["no-memory", /memory/, () => marovia.greyOf({ width: 32767, height: 32767 * 4, data: new Uint8ClampedArray(4) })],
  ];
  for (const [status, message, call] of failures) {
    assert.throws(call, (error) => error instanceof MaroviaError && error.status === status && message.test(error.message));
    assert.deepEqual(marovia.encode(camera, { bytes: 2000 }).file, file, status);
  }
});

test("explores a file as truncating, decoding and measuring each length does", () => {
  const source = namedImage("blobs", 131, 96);
  for (const { extension: kind } of marovia.kinds) {
    const explorer = marovia.explore(source, { kind });
    explorer.code();
    const { mostBytes } = explorer.master;
    for (const bytes of [300, explorer.bytesAt(0.7), mostBytes]) {
      const look = explorer.lookAt(bytes);
      const cut = explorer.fileOf(bytes);
      assert.ok(cut.file.length <= bytes);
      assert.equal(look.bytes, cut.file.length);
      const { samples } = marovia.decode(cut.file, cut.kind);
      assert.deepEqual(look.samples, samples);
      assert.equal(look.psnr, marovia.measure(source, { ...source, samples }).psnr);
    }
    const curve = marovia.curve(source, { kind });
    assert.deepEqual(curve.map((point) => point.psnr), explorer.stops.map((stop) => explorer.lookAt(stop).psnr));
    const opened = marovia.exploreFile(explorer.fileOf(mostBytes).file, kind);
    assert.deepEqual(opened.lookAt(300).samples, explorer.lookAt(300).samples);
  }
});

test("reads and writes images, and turns colours to grey as the readers of files do", () => {
  assert.deepEqual(marovia.readImage(marovia.writeImage(camera, "bmp")).samples, camera.samples);
  const file = readFileSync(new URL("images/colour_raw.ppm", data));
  const read = marovia.readImage(file);
  const rgb = file.subarray(file.length - 3 * read.samples.length);
  const rgba = Uint8ClampedArray.from({ length: 4 * read.samples.length }, (_, i) =>
    i % 4 === 3 ? 255 : rgb[3 * (i >> 2) + (i % 4)],
  );
  assert.deepEqual(marovia.greyOf({ width: read.cols, height: read.rows, data: rgba }), read);
});

test("gives back the memory of large images", () => {
  const large = { rows: 3000, cols: 3000, samples: new Uint8Array(9e6) };
  const before = process.memoryUsage().arrayBuffers;
  for (let i = 0; i < 4; ++i) marovia.encode(large);
  globalThis.gc?.();
  assert.ok(process.memoryUsage().arrayBuffers - before < 2e8);
});
