// Measures what docs/web.md tells, and prints its tables:
//
//   node web/measure.js build/run/bench/marovia_round_trip
//
// after ./run.sh and scripts/build_web.sh. Of times the fastest of several runs counts, natively and
// in Chromium, on one thread; of the slider the median too.
import { execFileSync } from "node:child_process";
import { readdirSync, readFileSync } from "node:fs";
import { createServer } from "node:http";
import { fileURLToPath } from "node:url";
import { gzipSync } from "node:zlib";
import axe from "axe-core";
import { openBrowser, shown } from "./studio/test/browser.js";

const here = new URL(".", import.meta.url);
const roundTrip = process.argv[2];
const repeat = 30;
const goals = { times: 1.4, module: 150_000, slider: 33, interactive: 1000 };
const row = (...cells) => console.log(`| ${cells.join(" | ")} |`);
const zipped = (url) => gzipSync(readFileSync(url), { level: 9 }).length;
const kilobytes = (bytes) => (bytes / 1000).toFixed(1);
const held = (value, most) => (value <= most ? "" : " (missed)");

function tellSizes() {
  const module = zipped(new URL("codec/dist/marovia.wasm", here));
  const assets = new URL("studio/dist/assets/", here);
  const page = readdirSync(assets).filter((name) => /\.(js|css)$/.test(name));
  row("What is loaded", "kB, gzipped");
  row("---", "---:");
  row("module", `${kilobytes(module)}${held(module, goals.module)}`);
  row("page, its style and its worker", kilobytes(page.reduce((sum, name) => sum + zipped(new URL(name, assets)), 0)));
}

// Serves the package as it lies there.
async function servePackage() {
  const types = { js: "text/javascript", wasm: "application/wasm", pgm: "image/x-portable-graymap" };
  const server = createServer(({ url }, response) => {
    const type = types[url.split(".").pop()];
    const home = new URL(url.endsWith(".pgm") ? "../Images/" : "codec/dist/", here);
    response.setHeader("content-type", type ?? "text/html");
    response.end(type ? readFileSync(new URL(`.${url}`, home)) : "");
  });
  await new Promise((ready) => server.listen(0, "127.0.0.1", ready));
  return { server, address: `http://127.0.0.1:${server.address().port}/` };
}

function nativeTimes(name, kind, wavelet) {
  const options = ["--tsv", "--repeat", repeat, "--rates", "0.5", "--kinds", kind, "--wavelets", wavelet];
  const image = fileURLToPath(new URL(`../Images/${name}.pgm`, here));
  const table = execFileSync(roundTrip, [...options.map(String), image], { encoding: "utf8" }).trim();
  return table.split("\n").at(-1).split("\t").slice(-2).map(Number);
}

const timesInPage = ([name, kind, wavelet, repeat]) =>
  (async () => {
    const { load } = await import("/index.js");
    const marovia = await load();
    const image = marovia.readImage(new Uint8Array(await (await fetch(`/${name}.pgm`)).arrayBuffer()));
    const fastest = (work) => {
      let least = Infinity;
      // The browser's optimising compiler takes its time; what runs before it is not counted.
      const warm = performance.now() + 1500;
      while (performance.now() < warm) work();
      for (let i = 0; i < repeat; ++i) {
        const start = performance.now();
        work();
        least = Math.min(least, performance.now() - start);
      }
      return least;
    };
    const { file } = marovia.encode(image, { kind, wavelet, rate: 0.5 });
    return [
      fastest(() => marovia.encode(image, { kind, wavelet, rate: 0.5 })),
      fastest(() => marovia.decode(file, kind)),
    ];
  })();

async function tellTimes(session) {
  const { server, address } = await servePackage();
  const page = await session.newPage();
  await page.goto(address);
  row("512 x 512", "native ms", "Chromium ms", "times");
  row("---", "---:", "---:", "---:");
  for (const [name, kind, wavelet] of [
    ["camera", "awb", "9/7"],
    ["camera", "awf", "9/7"],
    ["camera", "awh", "9/7"],
    ["camera", "awg", "2+2,2"],
  ]) {
    const native = nativeTimes(name, kind, wavelet);
    const inPage = await page.evaluate(timesInPage, [name, kind, wavelet, repeat]);
    for (const [i, what] of ["there", "back"].entries()) {
      const times = inPage[i] / native[i];
      row(`${kind} ${what}`, native[i].toFixed(1), inPage[i].toFixed(1), `${times.toFixed(2)}${held(times, goals.times)}`);
    }
  }
  server.close();
}

async function sliderTimes(page) {
  for (let i = 0; i < 40; ++i) {
    await page.locator("#rate").fill(String(300 + 10 * i));
    await page.waitForFunction((count) => performance.getEntriesByName("slider to picture").length > count, i + 1);
  }
  const times = await page.evaluate(() => performance.getEntriesByName("slider to picture").map((one) => one.duration));
  return times.slice(1).sort((a, b) => a - b);
}

async function tellPage(session) {
  const page = await session.newPage({ viewport: { width: 1280, height: 800 } });
  const interactive = await page.evaluate(() => performance.getEntriesByType("navigation")[0].domContentLoadedEventEnd);
  await page.getByRole("button", { name: "Camera" }).click();
  await shown(page, /dB/, "#psnr");
  await page.waitForTimeout(3000); // until the curve is drawn
  const times = await sliderTimes(page);
  const median = times[times.length >> 1];
  await page.evaluate(axe.source);
  const { violations, passes } = await page.evaluate(() => axe.run());
  row("The page", "");
  row("---", "---:");
  row("interactive after, ms", `${interactive.toFixed(0)}${held(interactive, goals.interactive)}`);
  row("slider to picture at 512 x 512, median ms", `${median.toFixed(1)}${held(median, goals.slider)}`);
  row("the fastest and the slowest, ms", `${times[0].toFixed(1)}, ${times.at(-1).toFixed(1)}`);
  row("axe-core: rules met, not met", `${passes.length}, ${violations.length}`);
}

const session = await openBrowser();
tellSizes();
console.log();
await tellTimes(session);
console.log();
await tellPage(session);
await session.close();
