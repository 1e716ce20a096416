// What callers pass, in the order in which the module reads it.
import { MaroviaError, refuse } from "./error.js";
import type { Lent } from "./instance.js";

/** Samples row by row, 0 black to 255 white, row 0 at the top. */
export interface GreyImage {
  rows: number;
  cols: number;
  samples: Uint8Array | Uint8ClampedArray;
}

/** Rows row1 to row2 and columns col1 to col2, all included, from 0. */
export interface Region {
  row1: number;
  col1: number;
  row2: number;
  col2: number;
}

export const wavelets = ["9/7", "5/3", "2+2,2"] as const;
export type Wavelet = (typeof wavelets)[number];

/** A coder, known by the extension of its files: "awf". */
export interface Kind {
  extension: string;
  /** As it is told to a user: "ASWDR, arithmetic coding". */
  name: string;
  lossless: boolean;
}

/** How a source is coded; what is not given the library chooses. */
export interface Recipe {
  /** An extension of `kinds`. */
  kind?: string;
  wavelet?: Wavelet;
  levels?: number;
  /** The part of the image that gets the last `share` of the bits. */
  region?: Region;
  share?: number;
}

export interface EncodeOptions extends Recipe {
  /** Bits a pixel; half a bit unless told. */
  rate?: number;
  /** The most bytes, in place of a rate. */
  bytes?: number;
  /** The least PSNR in decibels, in place of a rate. */
  psnr?: number;
  /** Whether sides of any length come back; true unless told. */
  pad?: boolean;
}

export const none: Region = { row1: NaN, col1: NaN, row2: NaN, col2: NaN };

export function numberOfKind(kinds: readonly Kind[], extension: string): number {
  const number = kinds.findIndex((kind) => kind.extension === extension);
  if (number < 0) refuse(`There is no kind of file "${extension}".`);
  return number;
}

function numberOfWavelet(wavelet: Wavelet): number {
  const number = wavelets.indexOf(wavelet) + 1;
  if (number === 0) refuse(`There is no wavelet "${wavelet}".`);
  return number;
}

export function regionNumbers({ row1, col1, row2, col2 }: Region): number[] {
  return [row1, col1, row2, col2];
}

export function putChoices(lent: Lent, kinds: readonly Kind[], options: EncodeOptions): number {
  return lent.putNumbers([
    options.kind === undefined ? undefined : numberOfKind(kinds, options.kind),
    options.wavelet === undefined ? undefined : numberOfWavelet(options.wavelet),
    options.levels,
    options.pad === false ? 0 : 1,
    options.rate,
    options.bytes,
    options.psnr,
    ...regionNumbers(options.region ?? none),
    options.share,
  ]);
}

const mostSide = 32767;

export function putImage(lent: Lent, { rows, cols, samples }: GreyImage): number {
  for (const side of [rows, cols]) {
    if (!Number.isInteger(side) || side < 1) refuse(`An image of ${rows} x ${cols} pixels is none.`);
    if (side > mostSide)
      throw new MaroviaError("limit", `A side of ${side} exceeds ${mostSide}, the longest.`);
  }
  if (samples.length !== rows * cols)
    refuse(`An image of ${rows} x ${cols} pixels has ${samples.length} samples.`);
  return lent.putWords([lent.put(samples), rows, cols]);
}

export function putFile(lent: Lent, file: Uint8Array, kind: number): number {
  return lent.putWords([lent.put(file), file.length, kind]);
}
