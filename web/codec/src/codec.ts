// The library's calls.
import * as args from "./arguments.js";
import type { EncodeOptions, GreyImage, Kind, Recipe, Region, Wavelet } from "./arguments.js";
import { Explorer, type CurvePoint } from "./explorer.js";
import { Instance, type Answer, type Lent, type Progress } from "./instance.js";

export interface Encoded {
  file: Uint8Array<ArrayBuffer>;
  kind: string;
  wavelet: Wavelet;
  levels: number;
}

export interface Decoded extends GreyImage {
  samples: Uint8Array<ArrayBuffer>;
  /** Bits that were asked for are missing; the picture is what was there. */
  truncated: boolean;
  /** The rate asked for was above the file's own. */
  rateHeld: boolean;
}

/** What a compressed file says of itself. */
export interface Info {
  wavelet: Wavelet;
  levels: number;
  rows: number;
  cols: number;
  codedRows: number;
  codedCols: number;
  mean: number;
  /** The first threshold is 2 to this. */
  exponent: number;
  /** Bits that the compressor might spend; none in a lossless file. */
  budget: number | undefined;
  bitsPresent: number;
  fillsBudget: boolean;
}

export interface Shortened {
  file: Uint8Array<ArrayBuffer>;
  /** That of the long file, but lossy where a lossless one was cut. */
  kind: string;
  /** The long file held no more. */
  rateHeld: boolean;
}

export interface Measures {
  supNorm: number;
  meanSquareError: number;
  rootMeanSquare: number;
  /** In decibels; none for identical images. */
  psnr: number | undefined;
}

export interface ReadImage extends GreyImage {
  samples: Uint8Array<ArrayBuffer>;
  /** The file holds more than that: colour, 16 bits, transparency. */
  altered: boolean;
}

/** What a number says that may be missing. */
export const given = (number: number | undefined): number | undefined =>
  Number.isNaN(number) ? undefined : number;

export const waveletOf = (number: number | undefined): Wavelet => args.wavelets[number! - 1]!;

// Memory grows as images need it and never shrinks: beyond this the next call begins with fresh one.
const keptBytes = 2 ** 26;

/** Calls may follow each other in any order, also after one that failed; none is asynchronous. */
export class Marovia {
  /** All coders, in the order of their numbers. */
  readonly kinds: readonly Kind[];
  readonly #module: WebAssembly.Module;
  #instance: Instance | undefined;

  constructor(module: WebAssembly.Module) {
    this.#module = module;
    this.kinds = this.#readKinds();
  }

  encode(image: GreyImage, options: EncodeOptions = {}): Encoded {
    const { bytes, numbers } = this.#ask((lent) =>
      lent.calls.encode!(args.putImage(lent, image), args.putChoices(lent, this.kinds, options)),
    );
    const [kind, wavelet, levels] = numbers;
    return { file: bytes, kind: this.#extension(kind), wavelet: waveletOf(wavelet), levels: levels! };
  }

  decode(file: Uint8Array, kind: string, options: { rate?: number; maxPixels?: number } = {}): Decoded {
    const { bytes, numbers } = this.#ask((lent) =>
      lent.calls.decode!(this.#put(lent, file, kind), options.rate ?? NaN, options.maxPixels ?? NaN),
    );
    const [rows, cols, truncated, rateHeld] = numbers;
    return { rows: rows!, cols: cols!, samples: bytes, truncated: !!truncated, rateHeld: !!rateHeld };
  }

  info(file: Uint8Array, kind: string, options: { maxPixels?: number } = {}): Info {
    const { numbers } = this.#ask((lent) =>
      lent.calls.info!(this.#put(lent, file, kind), options.maxPixels ?? NaN),
    );
    const [wavelet, levels, rows, cols, codedRows, codedCols, mean, exponent, budget, ...bits] =
      numbers as [number, number, number, number, number, number, number, number, number, ...number[]];
    return {
      wavelet: waveletOf(wavelet),
      ...{ levels, rows, cols, codedRows, codedCols, mean, exponent },
      budget: given(budget),
      bitsPresent: bits[0]!,
      fillsBudget: !!bits[1],
    };
  }

  /** Just one of a rate and a number of bytes. */
  truncate(file: Uint8Array, kind: string, to: { rate?: number; bytes?: number }): Shortened {
    const { bytes, numbers } = this.#ask((lent) =>
      lent.calls.truncate!(this.#put(lent, file, kind), to.rate ?? NaN, to.bytes ?? NaN),
    );
    return { file: bytes, kind: this.#extension(numbers[0]), rateHeld: !!numbers[1] };
  }

  measure(source: GreyImage, picture: GreyImage, region: Region = args.none): Measures {
    const { numbers } = this.#ask((lent) =>
      lent.calls.measure!(
        args.putImage(lent, source),
        args.putImage(lent, picture),
        lent.putNumbers(args.regionNumbers(region)),
      ),
    );
    const [supNorm, meanSquareError, rootMeanSquare, psnr] = numbers;
    return {
      supNorm: supNorm!,
      meanSquareError: meanSquareError!,
      rootMeanSquare: rootMeanSquare!,
      psnr: given(psnr),
    };
  }

  /** PSNR against bytes, a point a pass: of one long file, cut. */
  curve(image: GreyImage, recipe: Recipe = {}): CurvePoint[] {
    const explorer = this.explore(image, recipe);
    explorer.code();
    return explorer.stops.map((bytes) => explorer.pointAt(bytes));
  }

  /** A source, to be coded by `code` before anything is asked. */
  explore(image: GreyImage, recipe: Recipe = {}, onProgress?: Progress): Explorer {
    return Explorer.ofImage(new Instance(this.#module), this.kinds, image, recipe, onProgress);
  }

  /** A compressed file as it stands. */
  exploreFile(file: Uint8Array, kind: string, onProgress?: Progress): Explorer {
    return Explorer.ofFile(new Instance(this.#module), this.kinds, file, kind, onProgress);
  }

  /** A PGM, PPM or BMP; colour becomes grey with the weights of ITU-R BT.601. */
  readImage(file: Uint8Array, options: { maxPixels?: number } = {}): ReadImage {
    const { bytes, numbers } = this.#ask((lent) =>
      lent.calls.read_image!(args.putFile(lent, file, 0), options.maxPixels ?? NaN),
    );
    return { rows: numbers[0]!, cols: numbers[1]!, samples: bytes, altered: !!numbers[2] };
  }

  writeImage(image: GreyImage, format: "pgm" | "bmp" = "pgm"): Uint8Array<ArrayBuffer> {
    const number = format === "bmp" ? 1 : 0;
    return this.#ask((lent) => lent.calls.write_image!(args.putImage(lent, image), number)).bytes;
  }

  /** Pixels as a canvas has them; what lets something through counts as if it did not. */
  greyOf({ width, height, data }: { width: number; height: number; data: Uint8ClampedArray }): ReadImage {
    const { bytes, numbers } = this.#ask((lent) => lent.calls.grey!(lent.put(data), height, width));
    return { rows: height, cols: width, samples: bytes, altered: !!numbers[2] };
  }

  #extension(number: number | undefined): string {
    return this.kinds[number!]!.extension;
  }

  #put(lent: Lent, file: Uint8Array, kind: string): number {
    return args.putFile(lent, file, args.numberOfKind(this.kinds, kind));
  }

  #ask(call: (lent: Lent) => number): Answer {
    const instance = this.#instance ?? new Instance(this.#module);
    this.#instance = undefined; // unless the call comes back
    const answer = instance.during((lent) => instance.take(call(lent)));
    if (instance.memoryBytes <= keptBytes) this.#instance = instance;
    return answer;
  }

  #readKinds(): Kind[] {
    const instance = new Instance(this.#module);
    this.#instance = instance;
    const kinds: Kind[] = [];
    for (;;) {
      const address = instance.calls.kind!(kinds.length);
      if (address === 0) return kinds;
      const { bytes, numbers } = instance.take(address);
      const [extension, name] = new TextDecoder().decode(bytes).split("\n");
      kinds.push({ extension: extension!, name: name!, lossless: !!numbers[0] });
    }
  }
}
