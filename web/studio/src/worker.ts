// The codec at work, off the page's thread.
import { load, type Explorer, type GreyImage, type Look, type Recipe } from "marovia";
import { differenceColours, greyColours, bitmapOf } from "./colours";
import type { Input, Name, Opened, Output, Place, Reply, Request, Shown, Source } from "./protocol";

const codec = load();
let source: GreyImage | undefined;
let explorer: Explorer | undefined;
let toldPart = 0;

const tell = (reply: Reply, transfer: Transferable[] = []) => postMessage(reply, { transfer });

// A message for each hundredth is enough.
function tellProgress(part: number): void {
  if (Math.abs(part - toldPart) < 0.01) return;
  toldPart = part;
  tell({ progress: part });
}

// What was open stays so until the new one is read.
async function open(from: Source): Promise<Opened> {
  const marovia = await codec;
  const kind = "file" in from ? marovia.kindOf(from.name, from.file) : undefined;
  if ("file" in from && kind) {
    explorer = marovia.exploreFile(from.file, kind, tellProgress);
    source = undefined;
    const { rows, cols } = explorer.master;
    return { rows, cols, altered: false, sourceBitmap: undefined, source: undefined };
  }
  const read = "file" in from ? marovia.readImage(from.file) : marovia.greyOf(from.pixels);
  source = read;
  const { rows, cols, samples, altered } = read;
  const sourceBitmap = await bitmapOf(read, greyColours(samples));
  return { rows, cols, altered, sourceBitmap, source: samples.slice() };
}

async function code({ recipe, rate }: { recipe: Recipe; rate: number | undefined }) {
  if (source) {
    const coded = (await codec).explore(source, recipe, tellProgress);
    coded.code(rate);
    explorer = coded;
  }
  return { ...explorer!.master, stops: [...explorer!.stops] };
}

function bytesOf(place: Place): number {
  if ("bytes" in place) return place.bytes;
  return "part" in place ? explorer!.bytesAt(place.part) : explorer!.bytesForPsnr(place.psnr);
}

async function look({ at, gain }: Input<"look">): Promise<Shown> {
  const asked = bytesOf(at);
  const seen: Look = explorer!.lookAt(asked);
  const colours = gain && source ? differenceColours(source, seen, gain) : greyColours(seen.samples);
  const { bytes, samples, psnr, similarity, psnrInRegion } = seen;
  const bitmap = await bitmapOf(seen, colours);
  const part = explorer!.partOf(asked);
  return { asked, bytes, part, samples, bitmap, psnr, similarity, psnrInRegion };
}

const handlers: { [N in Name]: (input: Input<N>) => Output<N> | Promise<Output<N>> } = {
  kinds: async () => (await codec).kinds,
  open,
  code,
  look,
  point: (bytes) => explorer!.pointAt(bytes),
  file: (bytes) => explorer!.fileOf(bytes),
  pgm: async (bytes) => (await codec).writeImage(explorer!.lookAt(bytes), "pgm"),
};

function transferable(output: object): Transferable[] {
  const values = Object.values(output);
  return values.flatMap((value): Transferable[] => {
    if (value instanceof ImageBitmap) return [value];
    return value instanceof Uint8Array ? [value.buffer as ArrayBuffer] : [];
  });
}

async function answer<N extends Name>({ id, name, input }: Request<N>): Promise<void> {
  try {
    const output = await handlers[name](input);
    tell({ id, output }, output instanceof Uint8Array ? [output.buffer] : transferable(output));
  } catch (error) {
    tell({ id, failure: error instanceof Error ? error.message : String(error) });
  }
}

// One after another: what comes later must find what came before done.
let last: Promise<void> = Promise.resolve();
onmessage = ({ data }: MessageEvent<Request>) => {
  last = last.then(() => answer(data));
};
