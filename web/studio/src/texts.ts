// Numbers as the page writes them.

/** "870 B", "12.5 kB". */
export function sizeText(bytes: number): string {
  if (bytes < 1000) return `${bytes} B`;
  const [value, unit] = bytes < 1e6 ? [bytes / 1e3, "kB"] : [bytes / 1e6, "MB"];
  return `${Number(value.toPrecision(3))} ${unit}`;
}

export const decibelText = (psnr: number | undefined) => (psnr === undefined ? "∞" : `${psnr.toFixed(2)} dB`);
