// The page's side of the worker.
import type { Input, Name, Output, Reply } from "./protocol";

interface Waiting {
  resolve: (output: never) => void;
  reject: (reason: Error) => void;
}

export class Engine {
  onProgress: (part: number) => void = () => {};
  #worker = new Worker(new URL("./worker.ts", import.meta.url), { type: "module" });
  #waiting = new Map<number, Waiting>();
  #next = 0;

  constructor() {
    this.#worker.onmessage = ({ data }: MessageEvent<Reply>) => this.#take(data);
  }

  ask<N extends Name>(name: N, input: Input<N>, transfer: Transferable[] = []): Promise<Output<N>> {
    const id = this.#next++;
    this.#worker.postMessage({ id, name, input }, transfer);
    return new Promise((resolve, reject) => this.#waiting.set(id, { resolve, reject }));
  }

  #take(reply: Reply): void {
    if ("progress" in reply) return this.onProgress(reply.progress);
    const waiting = this.#waiting.get(reply.id);
    this.#waiting.delete(reply.id);
    if ("failure" in reply) waiting?.reject(new Error(reply.failure));
    else waiting?.resolve(reply.output as never);
  }
}

/** Of the wishes that come while one is at work only the newest is heard. */
export class Newest {
  #pending: (() => Promise<void>) | undefined;
  #running = false;

  async wish(job: () => Promise<void>): Promise<void> {
    this.#pending = job;
    if (this.#running) return;
    this.#running = true;
    try {
      while (this.#pending) {
        const next = this.#pending;
        this.#pending = undefined;
        await next();
      }
    } finally {
      this.#running = false;
    }
  }
}
