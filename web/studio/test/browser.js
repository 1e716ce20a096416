// The built page on this machine's loopback, and the system's Chromium to look at it.
import { fileURLToPath } from "node:url";
import { chromium } from "playwright-core";
import { preview } from "vite";

const executablePath = "/usr/bin/chromium";

export async function openBrowser() {
  const root = fileURLToPath(new URL("..", import.meta.url));
  const server = await preview({ root, logLevel: "error", preview: { host: "127.0.0.1", port: 0 } });
  const [address] = server.resolvedUrls.local;
  // Chromium's own sandbox does not work for the root user, nor in most containers.
  const browser = await chromium.launch({ executablePath, args: ["--no-sandbox"] });
  const complaints = [];

  async function newPage(options) {
    const context = await browser.newContext(options);
    const page = await context.newPage();
    page.setDefaultTimeout(20_000);
    page.on("pageerror", (error) => complaints.push(error.message));
    page.on("request", (request) => {
      const { protocol, origin } = new URL(request.url());
      if (!["blob:", "data:"].includes(protocol) && origin !== new URL(address).origin) complaints.push(request.url());
    });
    await page.goto(address);
    return page;
  }

  async function close() {
    await browser.close();
    await server.close();
  }
  return { newPage, close, complaints, address, browser };
}

/** Waits until an element says so. */
export function shown(page, text, selector = "#ssim", timeout = 20_000) {
  return page.locator(selector).filter({ hasText: text, hasNotText: "–" }).waitFor({ timeout });
}
