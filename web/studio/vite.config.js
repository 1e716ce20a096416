import { readFileSync } from "node:fs";
import { createHash } from "node:crypto";
import { defineConfig } from "vite";

// The service worker is told what the page consists of, so that it is there without a network.
const offline = {
  name: "offline",
  apply: "build",
  generateBundle(_options, bundle) {
    const files = ["./", "icon.svg", "app.webmanifest", ...Object.keys(bundle).filter((f) => f !== "index.html")];
    const code = readFileSync(new URL("src/offline.js", import.meta.url), "utf8");
    const version = createHash("sha256").update(files.join()).digest("hex").slice(0, 12);
    const list = `const version = ${JSON.stringify(version)};\nconst files = ${JSON.stringify(files)};\n`;
    this.emitFile({ type: "asset", fileName: "offline.js", source: list + code });
  },
};

export default defineConfig({
  base: "./",
  assetsInclude: ["**/*.pgm"],
  build: { target: "es2022", assetsInlineLimit: 0, modulePreload: { polyfill: false } },
  worker: { format: "es" },
  server: { fs: { allow: ["../.."] } },
  plugins: [offline],
});
