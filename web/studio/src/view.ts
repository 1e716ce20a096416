// Which part of an image the canvas shows, and how large; lengths are pixels of the screen.
export class View {
  /** Pixels of the screen a pixel of the image. */
  scale = 1;
  /** Of the image's corner. */
  x = 0;
  y = 0;
  #image = { width: 0, height: 0 };
  #pane = { width: 0, height: 0 };
  #fits = true;

  /** Another image is fitted; of one of the same size the part in view stays. */
  setImage(width: number, height: number): void {
    if (width === this.#image.width && height === this.#image.height) return;
    this.#image = { width, height };
    this.fit();
  }

  setPane(width: number, height: number): void {
    const middle = this.toImage(this.#pane.width / 2, this.#pane.height / 2);
    this.#pane = { width, height };
    if (this.#fits) return this.fit();
    this.x = width / 2 - middle.x * this.scale;
    this.y = height / 2 - middle.y * this.scale;
    this.#hold();
  }

  toImage(x: number, y: number): { x: number; y: number } {
    return { x: (x - this.x) / this.scale, y: (y - this.y) / this.scale };
  }

  /** All of the image, in the middle, a pixel of it never larger than one of the page. */
  fit(): void {
    const { width, height } = this.#image;
    if (width > 0 && this.#pane.width > 0)
      this.scale = Math.min(Math.max(1, devicePixelRatio), this.#pane.width / width, this.#pane.height / height);
    this.#hold();
    this.#fits = true;
  }

  /** What lies at a place of the screen stays there; the middle unless told. */
  zoomTo(scale: number, x = this.#pane.width / 2, y = this.#pane.height / 2): void {
    const kept = this.toImage(x, y);
    this.scale = Math.min(64, Math.max(1 / 64, scale));
    this.x = x - kept.x * this.scale;
    this.y = y - kept.y * this.scale;
    this.#hold();
    this.#fits = false;
  }

  panBy(right: number, down: number): void {
    this.x += right;
    this.y += down;
    this.#hold();
  }

  // An image smaller than the pane stands in the middle, a larger one leaves no gap.
  #hold(): void {
    const held = (corner: number, shown: number, pane: number) =>
      shown <= pane ? Math.floor((pane - shown) / 2) : Math.min(0, Math.max(pane - shown, Math.round(corner)));
    this.x = held(this.x, this.#image.width * this.scale, this.#pane.width);
    this.y = held(this.y, this.#image.height * this.scale, this.#pane.height);
  }
}
