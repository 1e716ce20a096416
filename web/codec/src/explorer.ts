// An embedded file and what each of its lengths is worth.
import * as args from "./arguments.js";
import type { GreyImage, Kind, Recipe, Wavelet } from "./arguments.js";
import { refuse } from "./error.js";
import { given, waveletOf } from "./codec.js";
import type { Instance, Lent, Progress } from "./instance.js";

export interface CurvePoint {
  bytes: number;
  /** None where the picture is the source. */
  psnr: number | undefined;
}

/** What a length decodes to, and how far that is from the source where there is one. */
export interface Look extends GreyImage {
  samples: Uint8Array<ArrayBuffer>;
  /** At most those that were asked for. */
  bytes: number;
  supNorm: number;
  rootMeanSquare: number;
  psnr: number | undefined;
  /** Structural similarity, 1 for the same image; none without a source. */
  similarity: number | undefined;
  psnrInRegion: number | undefined;
}

/** What is held: the file of most bytes, of which every shorter one is cut. */
export interface Master {
  rows: number;
  cols: number;
  wavelet: Wavelet;
  levels: number;
  kind: string;
  leastBytes: number;
  mostBytes: number;
}

/**
 * It has a memory of its own, which goes with it. Whoever asks more than the module can do gets an
 * error, and cannot go on with this explorer.
 */
export class Explorer {
  readonly #instance: Instance;
  readonly #kinds: readonly Kind[];
  readonly #address: number;
  #master: Master | undefined;
  #stops: number[] = [];

  private constructor(instance: Instance, kinds: readonly Kind[], make: (lent: Lent) => number) {
    this.#instance = instance;
    this.#kinds = kinds;
    this.#address = instance.during(make);
  }

  static ofImage(
    instance: Instance,
    kinds: readonly Kind[],
    image: GreyImage,
    recipe: Recipe,
    onProgress?: Progress,
  ): Explorer {
    instance.onProgress = onProgress;
    return new Explorer(instance, kinds, (lent) =>
      lent.calls.explorer_of_image!(args.putImage(lent, image), args.putChoices(lent, kinds, recipe)),
    );
  }

  static ofFile(
    instance: Instance,
    kinds: readonly Kind[],
    file: Uint8Array,
    kind: string,
    onProgress?: Progress,
  ): Explorer {
    instance.onProgress = onProgress;
    const number = args.numberOfKind(kinds, kind);
    const explorer = new Explorer(instance, kinds, (lent) =>
      lent.calls.explorer_of_file!(args.putFile(lent, file, number)),
    );
    explorer.#takeMaster();
    return explorer;
  }

  /** Codes the source at so many bits a pixel, where the kind has any; 8 unless told. */
  code(rate = NaN): void {
    this.#call("explorer_code", rate);
    this.#takeMaster();
  }

  get master(): Master {
    return this.#master ?? refuse("The source is not coded yet.");
  }

  /** Lengths at which a pass ends, rising: where the curve has its points. */
  get stops(): readonly number[] {
    return this.#stops;
  }

  /** The length at a place from 0 to 1 on a logarithmic scale, and the place of a length. */
  bytesAt(part: number): number {
    return this.#call("explorer_bytes_at", part);
  }
  partOf(bytes: number): number {
    return this.#call("explorer_part_of", bytes);
  }

  /** A file of at most so many bytes. */
  fileOf(bytes: number): { file: Uint8Array<ArrayBuffer>; kind: string } {
    const answer = this.#ask("explorer_file", bytes);
    return { file: answer.bytes, kind: this.#kinds[answer.numbers[0]!]!.extension };
  }

  lookAt(bytes: number): Look {
    const answer = this.#ask("explorer_look", bytes);
    const [held, rows, cols, supNorm, rootMeanSquare, psnr, similarity, inRegion] = answer.numbers;
    return {
      bytes: held!,
      rows: rows!,
      cols: cols!,
      samples: answer.bytes,
      supNorm: supNorm!,
      rootMeanSquare: rootMeanSquare!,
      psnr: given(psnr),
      similarity: given(similarity),
      psnrInRegion: given(inRegion),
    };
  }

  /** Only of a source. */
  pointAt(bytes: number): CurvePoint {
    const { numbers } = this.#ask("explorer_point", bytes);
    return { bytes: numbers[0]!, psnr: given(numbers[1]) };
  }

  /** The fewest bytes whose picture is that good, or the most there are. Only of a source. */
  bytesForPsnr(psnr: number): number {
    return this.#call("explorer_bytes_for_psnr", psnr);
  }

  #call(name: string, number: number): number {
    return this.#instance.during((lent) => lent.calls[name]!(this.#address, number));
  }

  #ask(name: string, number: number) {
    return this.#instance.take(this.#call(name, number));
  }

  #takeMaster(): void {
    const { bytes, numbers } = this.#ask("explorer_master", 0);
    const [rows, cols, wavelet, levels, kind, leastBytes, mostBytes] = numbers as [
      number, number, number, number, number, number, number,
    ];
    this.#stops = [...new Float64Array(bytes.buffer)];
    this.#master = {
      ...{ rows, cols, levels, leastBytes, mostBytes },
      wavelet: waveletOf(wavelet),
      kind: this.#kinds[kind]!.extension,
    };
  }
}
