// The page's controls by their names.
function control<E extends HTMLElement>(id: string): E {
  return document.getElementById(id) as E;
}

const input = (id: string) => control<HTMLInputElement>(id);
const select = (id: string) => control<HTMLSelectElement>(id);
const button = (id: string) => control<HTMLButtonElement>(id);

export const controls = {
  name: control("name"),
  choose: button("choose"),
  sample: select("sample"),
  samples: control("samples"),
  file: input("file"),
  stage: control("stage"),
  canvas: control<HTMLCanvasElement>("canvas"),
  wipe: control("wipe"),
  empty: control("empty"),
  readout: control("readout"),
  mode: control("mode"),
  hold: button("hold"),
  zoomIn: button("zoom-in"),
  zoomOut: button("zoom-out"),
  fit: button("fit"),
  full: button("full"),
  zoom: control("zoom"),
  gainRow: control("gain-row"),
  gain: input("gain"),
  rate: input("rate"),
  bytes: control("bytes"),
  bpp: control("bpp"),
  ratio: control("ratio"),
  psnr: control("psnr"),
  ssim: control("ssim"),
  progress: control<HTMLProgressElement>("progress"),
  message: control("message"),
  curve: control("curve"),
  target: input("target"),
  unit: select("unit"),
  kind: select("kind"),
  wavelet: select("wavelet"),
  levels: input("levels"),
  draw: button("draw"),
  clear: button("clear"),
  regionPsnr: control("region-psnr"),
  regionFields: control("region-fields"),
  sides: { row1: input("row1"), col1: input("col1"), row2: input("row2"), col2: input("col2") },
  share: input("share"),
  saveFile: button("save-file"),
  savePng: button("save-png"),
  savePgm: button("save-pgm"),
};

/** `source`: whether there is one to code anew, or to compare with. */
export function enable(source: boolean): void {
  const { rate, target, unit, saveFile, savePng, savePgm, kind, wavelet, levels, draw, hold } = controls;
  for (const one of [rate, target, unit, saveFile, savePng, savePgm]) one.disabled = false;
  for (const one of [kind, wavelet, levels, draw, hold]) one.disabled = !source;
  for (const mode of controls.mode.querySelectorAll("input")) mode.disabled = !source && mode.value !== "picture";
  unit.querySelector<HTMLOptionElement>("[value=psnr]")!.disabled = !source;
}
