// PSNR against bytes, both axes drawn here: a line, the place of the slider, the line before.
import type { CurvePoint } from "marovia";
import { sizeText } from "./texts";

const width = 300;
const height = 190;
// Above it no eye sees a difference; the line runs out of the frame.
const mostDecibels = 60;
const frame = { left: 30, right: 6, top: 8, bottom: 22 };
const namespace = "http://www.w3.org/2000/svg";

function shape(name: string, attributes: Record<string, string | number>, text = ""): SVGElement {
  const element = document.createElementNS(namespace, name);
  for (const [key, value] of Object.entries(attributes)) element.setAttribute(key, String(value));
  element.textContent = text;
  return element;
}

export class Curve {
  onChoose: (part: number) => void = () => {};
  #points: CurvePoint[] = [];
  #before: CurvePoint[] = [];
  #range = { least: 100, most: 1e6 };
  #place: CurvePoint | undefined;
  readonly #svg: SVGElement;

  constructor(home: HTMLElement) {
    this.#svg = shape("svg", { viewBox: `0 0 ${width} ${height}`, role: "img", "aria-label": "No curve yet" });
    home.append(this.#svg);
    this.#svg.addEventListener("click", (event) => {
      const { left, width: shown } = this.#svg.getBoundingClientRect();
      const x = ((event.clientX - left) / shown) * width;
      const part = (x - frame.left) / (width - frame.left - frame.right);
      if (this.#points.length > 0) this.onChoose(Math.min(1, Math.max(0, part)));
    });
    this.#paint();
  }

  /** Of another master; the line so far stays as a paler one where it is of the same source. */
  begin(least: number, most: number, sameSource: boolean): void {
    this.#before = sameSource && this.#points.length > 1 ? this.#points : [];
    this.#points = [];
    this.#place = undefined;
    this.#range = { least, most };
    this.#paint();
  }

  add(point: CurvePoint): void {
    if (point.psnr === undefined) return;
    this.#points = [...this.#points, point].sort((a, b) => a.bytes - b.bytes);
    this.#paint();
  }

  mark(place: CurvePoint): void {
    this.#place = place;
    this.#paint();
  }

  #x(bytes: number): number {
    const { least, most } = this.#range;
    const part = Math.log(Math.max(bytes, least) / least) / Math.log(most / least || 2);
    return frame.left + Math.min(1, part) * (width - frame.left - frame.right);
  }

  #y(psnr: number): number {
    const [low, high] = this.#decibels();
    return height - frame.bottom - ((psnr - low) / (high - low)) * (height - frame.top - frame.bottom);
  }

  #decibels(): [number, number] {
    const values = [...this.#points, ...this.#before].map((point) => point.psnr!);
    if (values.length === 0) return [20, 50];
    const most = Math.min(mostDecibels, 10 * Math.ceil(Math.max(...values) / 10));
    return [Math.min(most - 10, 10 * Math.floor(Math.min(...values) / 10)), most];
  }

  #line(points: CurvePoint[], className: string): SVGElement {
    const places = points.map(({ bytes, psnr }) => `${this.#x(bytes).toFixed(1)},${this.#y(psnr!).toFixed(1)}`);
    return shape("polyline", { class: className, points: places.join(" "), "clip-path": "url(#frame)" });
  }

  #paint(): void {
    const [low, high] = this.#decibels();
    const parts = [this.#clip()];
    for (let psnr = low; psnr <= high; psnr += 10) {
      const y = this.#y(psnr);
      parts.push(shape("line", { class: "axis", x1: frame.left, x2: width - frame.right, y1: y, y2: y }));
      parts.push(shape("text", { x: 2, y: y + 4 }, `${psnr}`));
    }
    const { least, most } = this.#range;
    for (let bytes = 10 ** Math.ceil(Math.log10(least)); bytes <= most; bytes *= 10)
      parts.push(shape("text", { x: this.#x(bytes), y: height - 6, "text-anchor": "middle" }, sizeText(bytes)));
    parts.push(this.#line(this.#before, "before"), this.#line(this.#points, "line"));
    if (this.#place?.psnr !== undefined)
      parts.push(shape("circle", { class: "place", r: 5, cx: this.#x(this.#place.bytes), cy: this.#y(Math.min(high, this.#place.psnr)) }));
    this.#svg.replaceChildren(...parts);
    this.#svg.setAttribute("aria-label", this.#said());
  }

  #clip(): SVGElement {
    const clip = shape("clipPath", { id: "frame" });
    clip.append(shape("rect", { x: frame.left, y: frame.top, width, height: height - frame.top - frame.bottom }));
    return clip;
  }

  #said(): string {
    if (this.#points.length < 2) return "No curve yet";
    const end = ({ bytes, psnr }: CurvePoint) => `${psnr!.toFixed(1)} dB at ${sizeText(bytes)}`;
    return `PSNR rises from ${end(this.#points[0]!)} to ${end(this.#points.at(-1)!)}`;
  }
}
