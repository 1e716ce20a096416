// What the page asks of the worker, and what comes back.
import type { CurvePoint, Kind, Master, Recipe } from "marovia";

/** Pixels that the browser decoded, or a file that the codec reads. */
export type Source =
  | { name: string; pixels: { width: number; height: number; data: Uint8ClampedArray } }
  | { name: string; file: Uint8Array };

/** A length to look at. */
export type Place = { part: number } | { bytes: number } | { psnr: number };

export interface Opened {
  rows: number;
  cols: number;
  /** Colour became grey, or 16 bits 8. */
  altered: boolean;
  /** None of a compressed file. */
  sourceBitmap: ImageBitmap | undefined;
  source: Uint8Array | undefined;
}

export interface Mastered extends Master {
  stops: number[];
}

export interface Shown {
  /** The length that was asked for, and what the file has of it: it ends with a whole symbol. */
  asked: number;
  bytes: number;
  part: number;
  samples: Uint8Array;
  bitmap: ImageBitmap;
  psnr: number | undefined;
  similarity: number | undefined;
  psnrInRegion: number | undefined;
}

/** Each call by its name: what goes in, what comes out. */
export interface Calls {
  kinds: [undefined, readonly Kind[]];
  open: [Source, Opened];
  /** Codes the source; quickly at a rate, so that there is something to see. */
  code: [{ recipe: Recipe; rate: number | undefined }, Mastered];
  /** With a gain the bitmap is that of the difference. */
  look: [{ at: Place; gain: number | undefined }, Shown];
  point: [number, CurvePoint];
  file: [number, { file: Uint8Array<ArrayBuffer>; kind: string }];
  pgm: [number, Uint8Array<ArrayBuffer>];
}

export type Name = keyof Calls;
export type Input<N extends Name> = Calls[N][0];
export type Output<N extends Name> = Calls[N][1];

export interface Request<N extends Name = Name> {
  id: number;
  name: N;
  input: Input<N>;
}

export type Reply =
  | { id: number; output: unknown }
  | { id: number; failure: string }
  | { progress: number };
