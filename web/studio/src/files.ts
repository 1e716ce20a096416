// What comes in by choosing, dropping and pasting, and what goes out.
import type { Kind } from "marovia";
import type { Source } from "./protocol";

const readByTheCodec = ["pgm", "ppm", "pbm", "pnm", "pam", "bmp"];

async function pixelsOf(blob: Blob): Promise<ImageData> {
  const bitmap = await createImageBitmap(blob);
  const context = new OffscreenCanvas(bitmap.width, bitmap.height).getContext("2d", { willReadFrequently: true })!;
  // What lets something through stands on white.
  context.fillStyle = "#ffffff";
  context.fillRect(0, 0, bitmap.width, bitmap.height);
  context.drawImage(bitmap, 0, 0);
  const pixels = context.getImageData(0, 0, bitmap.width, bitmap.height);
  bitmap.close();
  return pixels;
}

/** Pixels where the browser can decode it; else the codec looks at the bytes, and says what it is. */
export async function sourceOf(blob: Blob, name: string, kinds: readonly Kind[]): Promise<Source> {
  const extension = name.split(".").pop()!.toLowerCase();
  const isOurs = readByTheCodec.includes(extension) || kinds.some((kind) => kind.extension === extension);
  if (!isOurs) {
    const pixels = await pixelsOf(blob).catch(() => undefined);
    if (pixels) return { name, pixels };
  }
  return { name, file: new Uint8Array(await blob.arrayBuffer()) };
}

export function bindArrivals(stage: HTMLElement, onFile: (file: File) => void): void {
  const take = (files: FileList | null | undefined) => {
    if (files?.[0]) onFile(files[0]);
  };
  window.addEventListener("dragover", (event) => {
    event.preventDefault();
    stage.classList.add("dropping");
  });
  window.addEventListener("dragleave", (event) => {
    if (!event.relatedTarget) stage.classList.remove("dropping");
  });
  window.addEventListener("drop", (event) => {
    event.preventDefault();
    stage.classList.remove("dropping");
    take(event.dataTransfer?.files);
  });
  window.addEventListener("paste", (event) => take(event.clipboardData?.files));
}

export function save(data: BlobPart, name: string, type = "application/octet-stream"): void {
  const link = document.createElement("a");
  link.href = URL.createObjectURL(new Blob([data], { type }));
  link.download = name;
  link.click();
  setTimeout(() => URL.revokeObjectURL(link.href), 10_000);
}
