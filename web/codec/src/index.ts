/**
 * Grey images into embedded wavelet files, and back, in browsers, in their workers and in Node.
 *
 *     const marovia = await load();
 *     const { file, kind } = marovia.encode({ rows, cols, samples }, { rate: 0.5 });
 *     const picture = marovia.decode(file, kind);
 *
 * A file is embedded: decoded at a lower rate, or cut short, it gives the picture that those bits
 * hold. Every call may throw a MaroviaError.
 */
import { Marovia } from "./codec.js";

export type { GreyImage, Region, Wavelet, Kind, Recipe, EncodeOptions } from "./arguments.js";
export { wavelets } from "./arguments.js";
export { Marovia } from "./codec.js";
export type { Encoded, Decoded, Info, Shortened, Measures, ReadImage } from "./codec.js";
export { Explorer } from "./explorer.js";
export type { CurvePoint, Look, Master } from "./explorer.js";
export type { Progress } from "./instance.js";
export { MaroviaError, type Status } from "./error.js";

/** `wasm`: the module or its bytes, where it does not lie beside this one. */
export async function load(wasm?: WebAssembly.Module | BufferSource): Promise<Marovia> {
  if (wasm instanceof WebAssembly.Module) return new Marovia(wasm);
  return new Marovia(await (wasm ? WebAssembly.compile(wasm) : compileBeside()));
}

async function compileBeside(): Promise<WebAssembly.Module> {
  const url = new URL("./marovia.wasm", import.meta.url);
  if (url.protocol === "file:") {
    const { readFile } = await import(/* @vite-ignore */ "node:fs/promises");
    return WebAssembly.compile(await readFile(url));
  }
  const response = await fetch(url);
  if (!response.ok) throw new Error(`${url} could not be fetched: ${response.status}.`);
  // A server that does not know the type has its bytes compiled when they are all there.
  if (!response.headers.get("content-type")?.startsWith("application/wasm"))
    return WebAssembly.compile(await response.arrayBuffer());
  return WebAssembly.compileStreaming(response);
}
