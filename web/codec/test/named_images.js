// The images of the recorded results, made by formula; every division truncates.
const div = (a, b) => Math.trunc(a / b);

function blobs(rows, cols, r, c) {
  let sum = 32 + ((r * c + 3 * r + 5 * c) % 5);
  for (let k = 0; k < 10; ++k) {
    const radius = 3 + div(Math.max(rows, cols) * (k + 2), 24);
    const fromRow = r - div(((7 * k + 3) % 11) * rows, 11);
    const fromCol = c - div(((5 * k + 2) % 11) * cols, 11);
    const height = 40 + ((17 * k) % 120);
    const distance = fromRow * fromRow + fromCol * fromCol;
    sum += Math.max(0, height - div(height * distance, radius * radius));
  }
  return Math.min(255, sum);
}

function noise() {
  let x = 12345n;
  return () => {
    x = (1103515245n * x + 12345n) & 0x7fffffffn;
    return Number((x / 65536n) % 256n);
  };
}

const pixels = {
  gradient: (rows, cols) => (r, c) =>
    div(div(255 * r, Math.max(1, rows - 1)) + div(255 * c, Math.max(1, cols - 1)), 2),
  checker: () => (r, c) => ((div(r, 5) + div(c, 7)) % 2 === 1 ? 255 : 0),
  rings: () => (r, c) => (div(r * r + 3 * c * c, 97) % 3 === 0 ? 255 : 20),
  halves: (rows, cols) => (r, c) => (c >= div(cols, 2) ? 128 : 0),
  black: () => () => 0,
  flat: (rows, cols) => (r, c) => (r === div(rows, 2) && c === div(cols, 2) ? 101 : 100),
  blobs: (rows, cols) => (r, c) => blobs(rows, cols, r, c),
  lcgnoise: noise,
};

export function namedImage(name, rows, cols) {
  const pixel = pixels[name](rows, cols);
  const samples = Uint8Array.from({ length: rows * cols }, (_, i) => pixel(div(i, cols), i % cols));
  return { rows, cols, samples };
}
