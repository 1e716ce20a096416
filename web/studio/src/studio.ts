// What is open, how it is coded, and which length of it is looked at.
import type { Kind, Recipe, Region, Wavelet } from "marovia";
import { controls, enable } from "./controls";
import { Curve } from "./curve";
import { Engine, Newest } from "./engine";
import { save, sourceOf } from "./files";
import type { Mastered, Opened, Place, Shown } from "./protocol";
import { Stage } from "./stage";
import { decibelText, sizeText } from "./texts";

// Above so many pixels a quick master of few bits is shown before the whole one is coded.
const quickAbove = 2_000_000;
const quickRate = 1;
// Where the slider stands at first: about half a bit a pixel.
const firstPart = 0.6;

export class Studio {
  readonly stage = new Stage(controls.canvas, controls.readout);
  readonly #engine = new Engine();
  readonly #curve = new Curve(controls.curve);
  readonly #looks = new Newest();
  #kinds: readonly Kind[] = [];
  #opened: Opened | undefined;
  #name = "";
  #master: Mastered | undefined;
  #shown: Shown | undefined;
  #place: Place = { part: firstPart };
  // Of the coding at work: what belongs to an earlier one is dropped.
  #turn = 0;

  constructor() {
    this.#engine.onProgress = (part) => (controls.progress.value = part);
    this.#curve.onChoose = (part) => this.look({ part });
    this.stage.onRegion = () => this.#guarded(() => this.#recode());
  }

  async start(): Promise<void> {
    this.#kinds = await this.#engine.ask("kinds", undefined);
    for (const { extension, name } of this.#kinds) controls.kind.add(new Option(`${extension}: ${name}`, extension));
    controls.file.accept += this.#kinds.map((kind) => `,.${kind.extension}`).join("");
    controls.kind.value = ""; // as the library thinks best, until a master says which that is
  }

  get source(): boolean {
    return this.#opened?.sourceBitmap !== undefined;
  }

  open(blob: Blob, name: string): Promise<void> {
    return this.#guarded(async () => {
      const source = await sourceOf(blob, name, this.#kinds);
      const buffer = "file" in source ? source.file.buffer : source.pixels.data.buffer;
      const opened = await this.#engine.ask("open", source, [buffer as ArrayBuffer]);
      this.#take(opened, name);
      await this.#recode(true);
    }, name);
  }

  /** Codes the source as the controls say. */
  recode(): Promise<void> {
    return this.#guarded(() => this.#recode());
  }

  look(at: Place): Promise<void> {
    const asked = performance.now();
    this.#place = at;
    return this.#guarded(() =>
      this.#looks.wish(async () => {
        const gain = this.stage.mode === "difference" ? Number(controls.gain.value) : undefined;
        const shown = await this.#engine.ask("look", { at: this.#place, gain });
        this.#shown = shown;
        this.#tell(shown);
        await this.stage.setPicture(shown);
        performance.measure("slider to picture", { start: asked });
      }),
    );
  }

  lookAgain(): Promise<void> {
    return this.#master ? this.look(this.#place) : Promise.resolve();
  }

  /** As typed in a unit. */
  lookFor(value: number, unit: string): Promise<void> {
    if (!(value > 0)) return Promise.resolve();
    const pixels = this.#opened!.rows * this.#opened!.cols;
    const places: Record<string, Place> = {
      bytes: { bytes: Math.floor(value) },
      rate: { bytes: Math.floor((value * pixels) / 8) },
      ratio: { bytes: Math.floor(pixels / value) },
      psnr: { psnr: value },
    };
    return this.look(places[unit]!);
  }

  async saveFile(): Promise<void> {
    await this.#guarded(async () => {
      const { file, kind } = await this.#engine.ask("file", this.#shown!.asked);
      save(file, `${this.#stem()}.${kind}`);
    });
  }

  async savePgm(): Promise<void> {
    await this.#guarded(async () =>
      save(await this.#engine.ask("pgm", this.#shown!.asked), `${this.#stem()}.pgm`, "image/x-portable-graymap"),
    );
  }

  async savePng(): Promise<void> {
    const { bitmap } = this.#shown!;
    const canvas = new OffscreenCanvas(bitmap.width, bitmap.height);
    canvas.getContext("2d")!.drawImage(bitmap, 0, 0);
    save(await canvas.convertToBlob({ type: "image/png" }), `${this.#stem()}.png`, "image/png");
  }

  #take(opened: Opened, name: string): void {
    this.#opened = opened;
    this.#name = name;
    this.#master = undefined;
    this.stage.region = undefined;
    const { sourceBitmap: bitmap, source: samples, rows, cols, altered } = opened;
    this.stage.setSource(bitmap && samples ? { bitmap, samples } : undefined);
    if (!bitmap && this.stage.mode !== "picture")
      controls.mode.querySelector<HTMLInputElement>("[value=picture]")!.click();
    controls.name.textContent = `${name}, ${cols} × ${rows}${altered ? ", as grey" : ""}`;
    document.title = `${name} – Marovia studio`;
    controls.empty.hidden = true;
    controls.rate.value = String(1000 * firstPart);
  }

  #recipe(): Recipe {
    const { kind, wavelet, levels, share } = controls;
    return {
      ...(kind.value && { kind: kind.value }),
      ...(wavelet.value && { wavelet: wavelet.value as Wavelet }),
      ...(levels.value && { levels: Number(levels.value) }),
      ...(this.stage.region && { region: this.stage.region, share: Number(share.value) / 100 }),
    };
  }

  async #recode(isNew = false): Promise<void> {
    const turn = ++this.#turn;
    const { rows, cols } = this.#opened!;
    if (this.#shown && !isNew) this.#place = { bytes: this.#shown.asked };
    const rates = this.source && isNew && rows * cols > quickAbove ? [quickRate, undefined] : [undefined];
    const slow = setTimeout(() => (controls.progress.hidden = false), 200);
    try {
      for (const rate of rates) {
        const master = await this.#engine.ask("code", { recipe: this.#recipe(), rate });
        if (turn !== this.#turn) return;
        this.#master = master;
        enable(this.source);
        this.#tellRegion(this.stage.region);
        controls.kind.value = master.kind;
        this.#curve.begin(master.leastBytes, master.mostBytes, !isNew);
        await this.look(isNew ? { part: firstPart } : this.#place);
      }
    } finally {
      clearTimeout(slow);
      controls.progress.hidden = true;
    }
    void this.#guarded(() => this.#drawCurve(turn));
  }

  // A point at a time, so that the slider never waits for more than one.
  async #drawCurve(turn: number): Promise<void> {
    if (!this.source) return;
    for (const bytes of this.#master!.stops) {
      const point = await this.#engine.ask("point", bytes);
      if (turn !== this.#turn) return;
      this.#curve.add(point);
    }
  }

  #tell({ bytes, part, psnr, similarity, psnrInRegion }: Shown): void {
    const pixels = this.#opened!.rows * this.#opened!.cols;
    const rate = ((8 * bytes) / pixels).toFixed(3);
    if (!("part" in this.#place)) controls.rate.value = String(1000 * part);
    controls.rate.setAttribute("aria-valuetext", `${sizeText(bytes)}, ${rate} bits per pixel`);
    controls.bytes.textContent = bytes.toLocaleString("en");
    controls.bpp.textContent = rate;
    controls.ratio.textContent = `${(pixels / bytes).toFixed(1)} : 1`;
    controls.psnr.textContent = this.source ? decibelText(psnr) : "–";
    controls.ssim.textContent = similarity?.toFixed(4) ?? "–";
    controls.regionPsnr.textContent = this.stage.region ? `PSNR in it ${decibelText(psnrInRegion)}` : "";
    this.#curve.mark({ bytes, psnr });
  }

  #tellRegion(region: Region | undefined): void {
    controls.clear.disabled = controls.regionFields.hidden = !region;
    if (!region) return;
    for (const [side, field] of Object.entries(controls.sides)) field.value = String(region[side as keyof Region]);
  }

  #stem(): string {
    return this.#name.replace(/\.[^.]*$/, "");
  }

  async #guarded(work: () => Promise<void>, name?: string): Promise<void> {
    try {
      controls.message.textContent = "";
      await work();
    } catch (error) {
      const sentence = error instanceof Error ? error.message : String(error);
      controls.message.textContent = name ? `${name}: ${sentence}` : sentence;
    }
  }
}
