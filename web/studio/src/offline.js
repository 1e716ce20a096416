// Keeps the page and all it loads, and answers from there: `version` and `files` stand before this.
const ours = "marovia-";

self.addEventListener("install", (event) => {
  const keep = async () => {
    const cache = await caches.open(ours + version);
    await cache.addAll(files);
    await self.skipWaiting();
  };
  event.waitUntil(keep());
});

self.addEventListener("activate", (event) => {
  const tidy = async () => {
    for (const name of await caches.keys()) {
      if (name.startsWith(ours) && name !== ours + version) await caches.delete(name);
    }
    await self.clients.claim();
  };
  event.waitUntil(tidy());
});

// The page itself is asked for first, so that a new one is seen at once.
self.addEventListener("fetch", (event) => {
  const { request } = event;
  if (request.method !== "GET") return;
  const kept = () => caches.match(request, { ignoreSearch: true, ignoreVary: true });
  const answer = async () => {
    if (request.mode === "navigate") return fetch(request).catch(() => caches.match("./"));
    return (await kept()) ?? fetch(request);
  };
  event.respondWith(answer());
});
