// The canvas: picture and source over each other, the region, the pixel under the pointer.
import type { Region } from "marovia";
import { bindGestures } from "./gestures";
import { View } from "./view";

export type Mode = "picture" | "source" | "wipe" | "difference";

export interface Plane {
  bitmap: ImageBitmap;
  samples: Uint8Array;
}

const clamp = (value: number, most: number) => Math.min(most, Math.max(0, Math.floor(value)));

export class Stage {
  readonly view = new View();
  mode: Mode = "picture";
  /** The source shows for as long as it is held. */
  held = false;
  drawing = false;
  region: Region | undefined;
  /** Where the source ends in the wipe, of the width. */
  wipe = 0.5;
  onRegion: (region: Region) => void = () => {};
  onZoom: (scale: number) => void = () => {};
  #picture: Plane | undefined;
  #source: Plane | undefined;
  #asked = false;
  #drawn: (() => void)[] = [];
  readonly #context: CanvasRenderingContext2D;

  constructor(
    readonly canvas: HTMLCanvasElement,
    readonly readout: HTMLElement,
  ) {
    this.#context = canvas.getContext("2d", { alpha: false })!;
    bindGestures(canvas, {
      view: this.view,
      draws: () => this.drawing,
      onDraw: (from, to, done) => this.#draw(from, to, done),
      onHover: (at) => this.#readOut(at),
      onChange: () => this.redraw(),
    });
    new ResizeObserver(() => this.#resize()).observe(canvas);
    matchMedia("(prefers-color-scheme: dark)").addEventListener("change", () => this.redraw());
  }

  setSource(source: Plane | undefined): void {
    this.#source?.bitmap.close();
    this.#source = source;
    this.redraw();
  }

  /** Done when it is on the canvas. */
  setPicture(picture: Plane | undefined): Promise<void> {
    this.#picture?.bitmap.close();
    this.#picture = picture;
    if (picture) this.view.setImage(picture.bitmap.width, picture.bitmap.height);
    this.redraw();
    return new Promise((done) => this.#drawn.push(done));
  }

  redraw(): void {
    if (this.#asked) return;
    this.#asked = true;
    requestAnimationFrame(() => this.#paint());
  }

  #resize(): void {
    const { canvas } = this;
    canvas.width = Math.round(canvas.clientWidth * devicePixelRatio);
    canvas.height = Math.round(canvas.clientHeight * devicePixelRatio);
    this.view.setPane(canvas.width, canvas.height);
    this.#paint();
  }

  #paint(): void {
    this.#asked = false;
    const { canvas, view } = this;
    const context = this.#context;
    context.fillStyle = getComputedStyle(canvas.parentElement!).backgroundColor;
    context.fillRect(0, 0, canvas.width, canvas.height);
    context.imageSmoothingEnabled = view.scale < 1;
    const showsSource = this.#source && (this.held || this.mode === "source");
    this.#paintPlane(showsSource ? this.#source : this.#picture);
    if (this.mode === "wipe" && this.#source && !showsSource) this.#paintWiped(this.#source);
    if (this.region && this.#picture) this.#paintRegion(this.region);
    if (this.#picture) this.onZoom(view.scale);
    for (const done of this.#drawn.splice(0)) done();
  }

  #paintPlane(plane: Plane | undefined): void {
    if (!plane) return;
    const { view } = this;
    const { width, height } = plane.bitmap;
    this.#context.drawImage(plane.bitmap, view.x, view.y, width * view.scale, height * view.scale);
  }

  #paintWiped(source: Plane): void {
    const context = this.#context;
    context.save();
    context.beginPath();
    context.rect(0, 0, this.wipe * this.canvas.width, this.canvas.height);
    context.clip();
    this.#paintPlane(source);
    context.restore();
  }

  #paintRegion({ row1, col1, row2, col2 }: Region): void {
    const { x, y, scale } = this.view;
    const context = this.#context;
    for (const [colour, dash] of [["#000000", 0], ["#ffff30", 6]] as const) {
      context.strokeStyle = colour;
      context.lineWidth = 2;
      context.setLineDash(dash ? [dash, dash] : []);
      context.strokeRect(x + col1 * scale, y + row1 * scale, (col2 + 1 - col1) * scale, (row2 + 1 - row1) * scale);
    }
  }

  #draw(from: { x: number; y: number }, to: { x: number; y: number }, done: boolean): void {
    if (!this.#picture) return;
    const { width, height } = this.#picture.bitmap;
    const [left, right] = [from.x, to.x].map((x) => clamp(x, width - 1)).sort((a, b) => a - b);
    const [top, bottom] = [from.y, to.y].map((y) => clamp(y, height - 1)).sort((a, b) => a - b);
    this.region = { row1: top!, col1: left!, row2: bottom!, col2: right! };
    this.redraw();
    if (done) this.onRegion(this.region);
  }

  #readOut(at: { x: number; y: number } | undefined): void {
    const bitmap = this.#picture?.bitmap;
    const [row, col] = [Math.floor(at?.y ?? -1), Math.floor(at?.x ?? -1)];
    const inside = bitmap && row >= 0 && col >= 0 && row < bitmap.height && col < bitmap.width;
    this.readout.hidden = !inside;
    if (!inside) return;
    const value = (plane: Plane | undefined) => plane?.samples[row * bitmap.width + col];
    const source = this.#source ? `source ${value(this.#source)}, ` : "";
    this.readout.textContent = `row ${row}, column ${col}: ${source}picture ${value(this.#picture)}`;
  }
}
