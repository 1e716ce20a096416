// Samples as pixels of a canvas: words of red, green, blue and opacity, lowest byte first.
import type { GreyImage } from "marovia";

const word = (red: number, green: number, blue: number) =>
  ((255 << 24) | (blue << 16) | (green << 8) | red) >>> 0;

const greys = Uint32Array.from({ length: 256 }, (_, v) => word(v, v, v));

// From black over purple and orange to white, each step brighter than the one before.
const heat = Uint32Array.from({ length: 256 }, (_, v) => {
  const part = v / 255;
  const rise = (from: number, to: number) => Math.min(1, Math.max(0, (part - from) / (to - from)));
  return word(255 * rise(0, 0.6), 255 * rise(0.35, 1), 255 * (rise(0, 0.3) - rise(0.3, 0.55) + rise(0.75, 1)));
});

export function greyColours(samples: ArrayLike<number>): Uint32Array<ArrayBuffer> {
  const words = new Uint32Array(samples.length);
  for (let i = 0; i < words.length; ++i) words[i] = greys[samples[i]!]!;
  return words;
}

export function differenceColours(one: GreyImage, other: GreyImage, gain: number): Uint32Array<ArrayBuffer> {
  const colours = Uint32Array.from({ length: 256 }, (_, v) => heat[Math.min(255, gain * v)]!);
  const words = new Uint32Array(one.samples.length);
  const [a, b] = [one.samples, other.samples];
  for (let i = 0; i < words.length; ++i) words[i] = colours[Math.abs(a[i]! - b[i]!)]!;
  return words;
}

export function bitmapOf({ rows, cols }: GreyImage, words: Uint32Array<ArrayBuffer>): Promise<ImageBitmap> {
  return createImageBitmap(new ImageData(new Uint8ClampedArray(words.buffer), cols, rows));
}
