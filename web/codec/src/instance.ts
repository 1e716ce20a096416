// One run of the module: its memory, and how calls get bytes in and answers out.
import { errorOf, MaroviaError } from "./error.js";

type Call = (...numbers: number[]) => number;

/** What the module exports besides its memory; an answer is an address, or 0 for none. */
export type Calls = Record<string, Call>;

/** The numbers that a call gives, and a copy of the bytes. */
export interface Answer {
  numbers: number[];
  bytes: Uint8Array<ArrayBuffer>;
}

export type Progress = (part: number) => void;

const mostNumbers = 16;

/**
 * Nothing unwinds in the module: a call that fails leaves it in the middle of its work, by an
 * exception out of the import that told of it. The instance must then be dropped.
 */
export class Instance {
  readonly #memory: WebAssembly.Memory;
  readonly calls: Calls;
  onProgress: Progress | undefined;

  constructor(module: WebAssembly.Module) {
    const host = {
      fail: (status: number, at: number, length: number) => {
        throw errorOf(status, new TextDecoder().decode(this.#view(at, length)));
      },
      progress: (part: number) => this.onProgress?.(part),
    };
    const { exports } = new WebAssembly.Instance(module, { host });
    this.#memory = exports.memory as WebAssembly.Memory;
    this.calls = exports as unknown as Calls;
    this.calls._initialize!();
  }

  get memoryBytes(): number {
    return this.#memory.buffer.byteLength;
  }

  /** What is put into memory by `work` is given back when it is done. */
  during<T>(work: (memory: Lent) => T): T {
    const lent = new Lent(this.calls, (at, length) => this.#view(at, length));
    try {
      const result = work(lent);
      lent.giveBack();
      return result;
    } catch (error) {
      if (!(error instanceof WebAssembly.RuntimeError)) throw error;
      throw new MaroviaError("internal", `The module stopped: ${error.message}.`);
    }
  }

  /** Copies what lies at the address of an answer, and lets the module forget it. */
  take(address: number): Answer {
    const [data, size, ...numbers] = new Float64Array(this.#memory.buffer, address, mostNumbers);
    const bytes = this.#view(data!, size!).slice();
    this.calls.forget!(address);
    return { numbers, bytes };
  }

  #view(at: number, length: number): Uint8Array<ArrayBuffer> {
    return new Uint8Array(this.#memory.buffer as ArrayBuffer, at >>> 0, length);
  }
}

/** Memory of the module that a call reads from. */
export class Lent {
  readonly #addresses: number[] = [];

  constructor(
    readonly calls: Calls,
    readonly view: (at: number, length: number) => Uint8Array,
  ) {}

  put(bytes: Uint8Array | Uint8ClampedArray): number {
    const address = this.calls.allocate!(bytes.length) >>> 0;
    this.#addresses.push(address);
    this.view(address, bytes.length).set(bytes);
    return address;
  }

  /** Doubles, of which those not given are NaN. */
  putNumbers(numbers: (number | undefined)[]): number {
    return this.put(new Uint8Array(Float64Array.from(numbers, (n) => n ?? NaN).buffer));
  }

  putWords(words: number[]): number {
    return this.put(new Uint8Array(Int32Array.from(words).buffer));
  }

  giveBack(): void {
    for (const address of this.#addresses) this.calls.release!(address);
  }
}
