// The page as its users meet it, in the system's Chromium, held against the tool.
import assert from "node:assert/strict";
import { execFileSync } from "node:child_process";
import { mkdtempSync, readFileSync, rmSync, writeFileSync } from "node:fs";
import { tmpdir } from "node:os";
import { join } from "node:path";
import { after, before, test } from "node:test";
import { fileURLToPath } from "node:url";
import axe from "axe-core";
import { openBrowser, shown } from "./browser.js";

const tool = process.env.MAROVIA_TOOL;
const camera = fileURLToPath(new URL("../../../Images/camera.pgm", import.meta.url));
const folder = mkdtempSync(join(tmpdir(), "marovia-web-"));
const at = (name) => join(folder, name);
const run = (...words) => execFileSync(tool, words);
let session;

before(async () => (session = await openBrowser()));
after(async () => {
  await session?.close();
  rmSync(folder, { recursive: true });
});

async function openSample(options) {
  const page = await session.newPage(options);
  await page.getByRole("button", { name: "Camera" }).click();
  await shown(page, /.+/);
  return page;
}

async function slideTo(page, value) {
  const before = await page.locator("#bytes").textContent();
  await page.locator("#rate").fill(String(value));
  await page.locator("#bytes").filter({ hasNotText: before }).waitFor();
}

// The samples of a 512 x 512 picture shown pixel by pixel in the middle of the canvas.
const coloursOnCanvas = (page) =>
  page.evaluate(async () => {
    await new Promise((drawn) => requestAnimationFrame(() => requestAnimationFrame(drawn)));
    const canvas = document.getElementById("canvas");
    const [x, y] = [canvas.width, canvas.height].map((side) => Math.floor((side - 512) / 2));
    const { data } = canvas.getContext("2d").getImageData(x, y, 512, 512);
    return Array.from(new Uint32Array(data.buffer), (word) => word & 0xffffff);
  });

async function download(page, name) {
  const [file] = await Promise.all([page.waitForEvent("download"), page.getByRole("button", { name }).click()]);
  await file.saveAs(at(file.suggestedFilename()));
  return file.suggestedFilename();
}

async function drop(page, name, bytes) {
  const transfer = await page.evaluateHandle(
    ([name, bytes]) => {
      const transfer = new DataTransfer();
      transfer.items.add(new File([Uint8Array.from(bytes)], name));
      return transfer;
    },
    [name, [...bytes]],
  );
  await page.dispatchEvent("#stage", "drop", { dataTransfer: transfer });
}

const pixelsOf = (pgm) => readFileSync(pgm).subarray(-512 * 512);
const message = (page, text) => page.getByRole("alert").filter({ hasText: text }).waitFor();

test("shows and saves what the tool decodes of the same start of a file", async () => {
  const page = await openSample({ viewport: { width: 1280, height: 900 } });
  await slideTo(page, 350);
  const bytes = "20000";
  await page.locator("#target").fill(bytes);
  await page.locator("#target").press("Enter");
  await shown(page, /^(19,99|20,000)/, "#bytes");
  await page.getByRole("button", { name: "1:1" }).click();
  const file = await download(page, "Compressed file");
  const kind = file.split(".").pop();
  run("compress", camera, at(`master.${kind}`), "--rate", "8");
  run("truncate", at(`master.${kind}`), at(`cut.${kind}`), "--bytes", bytes);
  assert.ok(readFileSync(at(file)).equals(readFileSync(at(`cut.${kind}`))));
  run("decompress", at(`cut.${kind}`), at("cut.pgm"));
  const decoded = pixelsOf(at("cut.pgm"));
  const differing = (await coloursOnCanvas(page)).filter((colour, i) => colour !== decoded[i] * 0x10101);
  assert.equal(differing.length, 0);
  assert.ok(pixelsOf(at(await download(page, "PGM"))).equals(decoded));
  const measured = run("measure", camera, at("cut.pgm")).toString();
  const psnr = Number(/PSNR error: +([\d.]+)/.exec(measured)[1]);
  assert.equal(await page.locator("#psnr").textContent(), `${psnr.toFixed(2)} dB`);

  await page.locator("#kind").selectOption("awg");
  await page.locator("#rate").fill("1000");
  await shown(page, "∞", "#psnr");
  run("decompress", at(await download(page, "Compressed file")), at("whole.pgm"));
  assert.ok(pixelsOf(at("whole.pgm")).equals(pixelsOf(camera)));
});

test("gives a region its share, and shows differences", async () => {
  const page = await openSample({ viewport: { width: 1280, height: 900 } });
  const before = parseFloat(await page.locator("#psnr").textContent());
  await page.getByRole("button", { name: "Draw" }).click();
  const { x, y, width, height } = await page.locator("#canvas").boundingBox();
  await page.mouse.move(x + width / 2, y + height / 2);
  await page.mouse.down();
  await page.mouse.move(x + width / 2 + 80, y + height / 2 + 60, { steps: 3 });
  await page.mouse.up();
  await shown(page, /dB|∞/, "#region-psnr");
  const said = (await page.locator("#region-psnr").textContent()).replace("PSNR in it ", "");
  const inside = said === "∞" ? Infinity : parseFloat(said);
  assert.ok(inside > before + 3, `${inside} against ${before}`);
  assert.equal((await page.locator("#col2").inputValue()) - (await page.locator("#col1").inputValue()), 80);
  await page.locator("label", { hasText: "Difference" }).click();
  await page.waitForTimeout(300);
  const isGrey = (colour) => (colour & 255) === colour >> 16 && (colour & 255) === ((colour >> 8) & 255);
  assert.ok(new Set((await coloursOnCanvas(page)).filter((colour) => !isGrey(colour))).size > 3);
});

test("tells what is wrong with a file, and keeps what was open", async () => {
  const page = await openSample();
  await drop(page, "broken.awf", new Uint8Array(7));
  await message(page, "broken.awf: ");
  await drop(page, "notes.txt", Buffer.from("no picture"));
  await message(page, "notes.txt: The file is no image");
  await slideTo(page, 200);
  assert.match(await page.locator("#psnr").textContent(), /dB/);
  run("compress", camera, at("short.awf"), "--bytes", "5000");
  await drop(page, "short.awf", readFileSync(at("short.awf")));
  await page.locator("#name").filter({ hasText: "short.awf, 512 × 512" }).waitFor();
  await slideTo(page, 1000);
  assert.equal(await page.locator("#bytes").textContent(), readFileSync(at("short.awf")).length.toLocaleString("en"));
});

test("works by keyboard and by touch", async () => {
  const page = await openSample({ hasTouch: true, viewport: { width: 390, height: 844 } });
  const zoom = async () => parseFloat(await page.locator("#zoom").textContent());
  const bytes = await page.locator("#bytes").textContent();
  await page.locator("#rate").focus();
  await page.keyboard.press("Home");
  await page.locator("#bytes").filter({ hasNotText: bytes }).waitFor();
  await page.locator("#canvas").focus();
  await page.keyboard.press("1");
  await shown(page, "100 %", "#zoom");
  await page.keyboard.press("0");
  await page.locator("#zoom").filter({ hasNotText: "100 %" }).waitFor();
  const fitted = await zoom();
  const { x, y, width, height } = await page.locator("#canvas").boundingBox();
  const touch = await page.context().newCDPSession(page);
  const fingers = (type, apart) =>
    touch.send("Input.dispatchTouchEvent", {
      type,
      touchPoints: apart ? [-apart, apart].map((by, id) => ({ x: x + width / 2 + by, y: y + height / 2, id })) : [],
    });
  await fingers("touchStart", 30);
  for (const apart of [45, 60, 90]) await fingers("touchMove", apart);
  await fingers("touchEnd", 0);
  await page.waitForTimeout(200);
  assert.ok((await zoom()) > 2 * fitted, `${fitted} to ${await zoom()}`);
});

test("opens 12 megapixels, and works without a network", async () => {
  const page = await openSample();
  await page.evaluate(() => navigator.serviceWorker.ready);
  await page.context().setOffline(true);
  await page.reload();
  const samples = Buffer.alloc(12e6, Buffer.from(Uint8Array.from({ length: 4001 }, (_, i) => (i * i) >> 9)));
  writeFileSync(at("large.pgm"), Buffer.concat([Buffer.from("P5\n4000 3000\n255\n"), samples]));
  await page.locator("#file").setInputFiles(at("large.pgm"));
  await page.locator("#name").filter({ hasText: "4000 × 3000" }).waitFor();
  await shown(page, /dB|∞/, "#psnr", 60_000);
});

test("is accessible, light and large, dark and small", async () => {
  for (const [colorScheme, width, height] of [["light", 1280, 800], ["dark", 390, 844]]) {
    const page = await session.newPage({ colorScheme, viewport: { width, height } });
    await page.evaluate(axe.source);
    const check = async () => {
      const { violations } = await page.evaluate(() => axe.run());
      assert.deepEqual(violations.map(({ id, nodes }) => [id, nodes.map(({ html }) => html)]), []);
    };
    await check();
    await page.getByRole("button", { name: "Camera" }).click();
    await shown(page, /dB/, "#psnr");
    await page.locator("label", { hasText: "Wipe" }).click();
    await check();
  }
});

test("asked no other host for anything, and had no errors", () => {
  assert.deepEqual(session.complaints, []);
});
