// What a failed call throws.

/** The kinds of failure, as the library tells them apart. */
export type Status =
  | "overflow"
  | "index"
  | "invalid-argument"
  | "malformed"
  | "unsupported"
  | "limit"
  | "io"
  | "no-memory"
  | "internal";

const statuses: readonly Status[] = [
  "overflow",
  "index",
  "invalid-argument",
  "malformed",
  "unsupported",
  "limit",
  "io",
  "no-memory",
  "internal",
];

export class MaroviaError extends Error {
  override name = "MaroviaError";

  /** `message` is one sentence that names the number concerned. */
  constructor(
    readonly status: Status,
    message: string,
  ) {
    super(message);
  }
}

/** By the number that the module gives it, from 1. */
export function errorOf(status: number, message: string): MaroviaError {
  return new MaroviaError(statuses[status - 1] ?? "internal", message);
}

export function refuse(message: string): never {
  throw new MaroviaError("invalid-argument", message);
}
