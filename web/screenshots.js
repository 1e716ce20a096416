// Makes the screenshots of docs/web.md anew: node web/screenshots.js
import { fileURLToPath } from "node:url";
import { openBrowser, shown } from "./studio/test/browser.js";

const fileOf = (name) => fileURLToPath(new URL(`../docs/screenshots/${name}.png`, import.meta.url));
const session = await openBrowser();

async function open(sample, options) {
  const page = await session.newPage(options);
  await page.getByRole("button", { name: sample }).click();
  await shown(page, /dB/, "#psnr");
  // The curve is complete when no point is added any more.
  const points = () => page.locator("#curve .line").getAttribute("points");
  let before;
  do {
    before = await points();
    await page.waitForTimeout(1500);
  } while (before !== (await points()));
  return page;
}

const desktop = await open("Camera", { viewport: { width: 1280, height: 800 } });
await desktop.screenshot({ path: fileOf("web_studio") });

const phone = await open("Astronaut", {
  viewport: { width: 390, height: 844 },
  deviceScaleFactor: 2,
  hasTouch: true,
  colorScheme: "dark",
});
await phone.locator("label", { hasText: "Wipe" }).click();
await phone.locator("#rate").fill("420");
await phone.waitForTimeout(500);
await phone.screenshot({ path: fileOf("web_phone") });
await session.close();
