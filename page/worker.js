'use strict';
// Runs the module beside the page, so that the page stays alive. A message {id, work, …} is answered by
// {id, answer} with the text that the module gives, or by {id, failed} when the module itself broke down:
// then this worker is of no further use.
let exports;

const memory = () => new Uint8Array(exports.memory.buffer);

// Whatever the module wants of a system it does without.
async function load(bytes) {
  const kNotCapable = 76;
  const module = await WebAssembly.compile(bytes);
  const imports = {};
  for (const {module: from, name} of WebAssembly.Module.imports(module)) {
    imports[from] ??= {};
    imports[from][name] = () => kNotCapable;
  }
  exports = (await WebAssembly.instantiate(module, imports)).exports;
  exports._initialize();
}

// Lays the pieces one behind the other into the module's memory.
function put(...pieces) {
  const at = exports.room(pieces.reduce((sum, piece) => sum + piece.length, 0));
  if (at === 0) throw new RangeError('memory');
  let next = at;
  for (const piece of pieces) {
    memory().set(piece, next);
    next += piece.length;
  }
}

function take(size) {
  const at = exports.answer();
  return new TextDecoder().decode(memory().slice(at, at + size));
}

const text = (string) => new TextEncoder().encode(string);

const works = {
  load: async ({bytes}) => { await load(bytes); return '{}'; },
  examine: ({name, bytes, limit, yes}) => {
    const named = text(name);
    put(named, new Uint8Array(bytes));
    return take(exports.examine(named.length, limit, yes));
  },
  report: ({form, masked}) => { put(text(form)); return take(exports.report(masked)); },
  records: ({file, from, to}) => take(exports.records(file, from, to)),
  search: ({query}) => { put(text(query)); return take(exports.search()); },
  rules: () => take(exports.rules()),
  forget: () => { exports.forget(); return '{}'; },
};

onmessage = async ({data}) => {
  try {
    postMessage({id: data.id, answer: await works[data.work](data)});
  } catch (error) {
    postMessage({id: data.id, failed: String(error)});
  }
};
