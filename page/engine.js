// The module in a worker. A worker that broke down is replaced by a fresh one, which has forgotten all files.
const engine = (() => {
  let worker, bytes, next = 0, generation = 0;
  const waiting = new Map();

  async function unpack() {
    const packed = Uint8Array.from(atob(byId('module').textContent.trim()), (c) => c.charCodeAt(0));
    const stream = new Blob([packed]).stream().pipeThrough(new DecompressionStream('gzip'));
    return new Response(stream).arrayBuffer();
  }

  function send(message, transfer = []) {
    return new Promise((resolve, reject) => {
      waiting.set(++next, {resolve, reject});
      worker.postMessage({id: next, ...message}, transfer);
    });
  }

  function breakDown(reason) {
    worker.terminate();
    worker = undefined;
    for (const {reject} of waiting.values()) reject(new Error(reason));
    waiting.clear();
  }

  async function start() {
    bytes ??= await unpack();
    const url = URL.createObjectURL(new Blob([byId('worker').textContent], {type: 'text/javascript'}));
    worker = new Worker(url);
    URL.revokeObjectURL(url);
    ++generation;
    worker.onerror = (event) => breakDown(event.message);
    worker.onmessage = ({data}) => {
      const caller = waiting.get(data.id);
      if (!caller) return;
      waiting.delete(data.id);
      if (data.failed !== undefined) {
        breakDown(data.failed);
        caller.reject(new Error(data.failed));
      } else {
        caller.resolve(data.answer);
      }
    };
    await send({work: 'load', bytes});
  }

  return {
    generation: () => generation,
    async ask(message, transfer) {
      if (!worker) await start();
      return JSON.parse(await send(message, transfer));
    },
    async text(message) {
      if (!worker) await start();
      return send(message);
    },
  };
})();
