'use strict';
(() => {
// Files in, findings out. Everything from a file is only ever put into the page as text.
const byId = (id) => document.getElementById(id);
const kMostBytes = 256 * 1024 * 1024;
const kPiece = 100;  // findings that are shown at a time
const kAround = 3;   // neighbours of a line on either side

// An element with a class, a text, and others in it.
function make(name, {className, text, children, ...rest} = {}) {
  const element = document.createElement(name);
  if (className) element.className = className;
  if (text !== undefined) element.textContent = text;
  for (const [key, value] of Object.entries(rest)) element.setAttribute(key, value);
  if (children) element.append(...children);
  return element;
}

const count = (n, one, many) => `${n.toLocaleString('pt-BR')} ${n === 1 ? one : many}`;

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

let rules = new Map();
const files = [];  // in the order of the list
let shown = null;  // the one whose findings are on the page
let busy = Promise.resolve();

const say = (sentence) => { byId('status').textContent = sentence; };

// ---- reading and examining --------------------------------------------------------------------

const settings = () => ({limit: Math.max(0, Math.trunc(Number(byId('limit').value)) || 0), yes: byId('yes').checked});

function unreadable(error) {
  if (error.name === 'NotReadableError' || error.name === 'NotFoundError') {
    return 'O arquivo mudou ou desapareceu depois de escolhido. Escolha-o de novo.';
  }
  return `O arquivo não pôde ser lido (${error.name}). Confira se ele está aberto em outro programa.`;
}

function failedSentence(error) {
  if (/memory|allocation|RangeError/i.test(error.message)) {
    return 'A memória do navegador não bastou para este arquivo. Feche outras páginas e tente de novo.';
  }
  return `O programa falhou com este arquivo (${error.message}). Avise quem o mantém.`;
}

async function read(entry) {
  if (entry.file.size > kMostBytes) {
    throw new Error('O arquivo passa de 256 MB; um arquivo Pré-Formatado tem no máximo uns 15 MB.');
  }
  try {
    return new Uint8Array(await entry.file.arrayBuffer());
  } catch (error) {
    throw new Error(unreadable(error));
  }
}

async function examine(entry) {
  let bytes;
  try {
    bytes = await read(entry);
  } catch (error) {
    Object.assign(entry, {state: 'erro', problem: error.message, findings: [], unexamined: [], declarations: []});
    return;
  }
  try {
    const answer = await engine.ask({work: 'examine', name: entry.name, bytes, ...entry.settings});
    if (answer.erro) throw new Error(answer.erro);
    const told = answer.relatorio.arquivos[0];
    Object.assign(entry, {
      bytes, state: told.estado, problem: told.problema, unexamined: told.naoExaminado, limited: told.limitado,
      declarations: answer.declaracoes, generation: engine.generation(),
      findings: told.inconsistencias.map((one, i) => ({...one, marks: answer.marcas[i]})),
    });
  } catch (error) {
    Object.assign(entry, {state: 'erro', problem: failedSentence(error), findings: [], unexamined: [], declarations: []});
  }
}

// One file after the other; the page stays alive meanwhile.
function take(chosen) {
  const added = [...chosen].map((file) => ({
    file, name: file.webkitRelativePath || file.name, settings: settings(), state: '', findings: [],
  }));
  if (!added.length) return say('Nenhum arquivo foi escolhido.');
  files.push(...added);
  drawList();
  busy = busy.then(async () => {
    const progress = byId('progress');
    progress.max = added.length;
    progress.hidden = false;
    for (const [i, entry] of added.entries()) {
      if (added.length > 1) progress.value = i; else progress.removeAttribute('value');
      say(`Conferindo ${entry.name} (${i + 1} de ${added.length})…`);
      await examine(entry);
      drawList();
      if (!shown || (i === 0 && added.length === 1)) show(entry);
    }
    progress.hidden = true;
    sayResult(added);
  });
}

function sayResult(added) {
  const of = (state) => added.filter((entry) => entry.state === state).length;
  const parts = [count(of('aceito'), 'aceito', 'aceitos'), count(of('recusado'), 'recusado', 'recusados')];
  if (of('erro')) parts.push(`${of('erro')} sem exame`);
  say(`${count(added.length, 'arquivo conferido', 'arquivos conferidos')}: ${parts.join(', ')}.`);
  document.body.dataset.done = String(Number(document.body.dataset.done || 0) + added.length);
}

// ---- the list of files ------------------------------------------------------------------------

const verdicts = {aceito: 'aceito', recusado: 'recusado', erro: 'não examinado', '': 'na fila'};

function drawList() {
  const only = byId('refused-only').checked;
  byId('list').replaceChildren(...files.filter((entry) => !only || entry.state !== 'aceito').map((entry) => {
    const button = make('button', {type: 'button', 'aria-current': String(entry === shown), children: [
      make('span', {className: 'name', text: entry.name}),
      make('span', {className: entry.state, text: verdicts[entry.state]}),
      make('span', {className: 'quiet', text: entry.findings.length
        ? count(entry.findings.length, 'inconsistência', 'inconsistências') : ''}),
    ]});
    button.addEventListener('click', () => { show(entry); byId('result').focus(); });
    return make('li', {children: [button]});
  }));
  byId('list-tools').hidden = files.length === 0;
  byId('reports').hidden = !files.some((entry) => entry.state === 'aceito' || entry.state === 'recusado');
}

async function clear() {
  await busy;
  files.length = 0;
  shown = null;
  byId('result').hidden = true;
  drawList();
  await engine.ask({work: 'forget'});
  say('A lista está vazia.');
}

// ---- one file ---------------------------------------------------------------------------------

// The file's lines as the importer's text passes part them: CR LF, a bare LF or a bare CR ends one.
function lineStarts(entry) {
  if (entry.starts) return entry.starts;
  const {bytes} = entry, starts = [0];
  for (let i = 0; i < bytes.length; ++i) {
    if (bytes[i] === 13 && bytes[i + 1] === 10) ++i;
    if (bytes[i] === 10 || bytes[i] === 13) starts.push(i + 1);
  }
  return entry.starts = starts;
}

const latin = new TextDecoder('windows-1252');

// One cell for each byte: Windows-1252, with a symbol for what cannot be seen.
function cells(bytes) {
  return latin.decode(bytes).replace(/[\u0000-\u001f]/g, (c) => String.fromCharCode(0x2400 + c.charCodeAt(0)))
    .replace(/\u007f/g, '\u2421').replace(/[\u0080-\u009f]/g, '\ufffd').replace(/\u00a0/g, '\u237d')
    .replace(/\u00ad/g, '\u2010');
}

function line(entry, number) {
  const starts = lineStarts(entry);
  if (number < 1 || number > starts.length || starts[number - 1] >= entry.bytes.length) return null;
  const end = number < starts.length ? starts[number] : entry.bytes.length;
  return cells(entry.bytes.subarray(starts[number - 1], Math.min(end, starts[number - 1] + 4000)).filter((b) => b !== 10 && b !== 13));
}

function ruler(length) {
  const out = [];
  for (let column = 1; column <= length; ++column) out.push(column % 5 === 0 ? '+' : '-');
  for (let column = 10; column <= length; column += 10) {
    [...String(column)].forEach((digit, i, all) => { out[column - all.length + i] = digit; });
  }
  return out.join('');
}

// The line of a finding with what is wrong in it marked; marks are columns, both ends included.
function markedLine(content, finding) {
  const parts = [];
  const last = Math.max(content.length, ...finding.marks.map(([, end]) => end));
  const inMark = (column) => finding.marks.some(([first, end]) => column >= first && column <= end);
  const inField = (column) => column >= finding.coluna && column < finding.coluna + finding.largura;
  const kindOf = (column) => (inMark(column) ? 'mark' : inField(column) ? 'field' : '');
  for (let from = 1; from <= last;) {
    let to = from;
    while (to < last && kindOf(to + 1) === kindOf(from)) ++to;
    const text = content.slice(from - 1, to).padEnd(to - from + 1, '\u2423');
    const kind = kindOf(from);
    parts.push(kind === 'mark' ? make('mark', {text}) : kind ? make('span', {className: kind, text}) : text);
    from = to + 1;
  }
  return parts;
}

const gutter = (number) => `${String(number).padStart(6)} │ `;

function linesOf(entry, finding, around) {
  const content = line(entry, finding.linha);
  if (content === null) return null;
  const pre = make('pre');
  const mark = markedLine(content, finding);
  pre.append(make('span', {className: 'ruler', text: `${gutter('')}${ruler(Math.max(content.length, 10))}\n`, 'aria-hidden': 'true'}));
  for (let number = finding.linha - around; number <= finding.linha + around; ++number) {
    const other = number === finding.linha ? null : line(entry, number);
    if (number === finding.linha) pre.append(gutter(number), ...mark, '\n');
    else if (other !== null) pre.append(make('span', {className: 'quiet', text: `${gutter(number)}${other}\n`}));
  }
  return make('div', {className: 'lines', tabindex: '0', role: 'group', 'aria-label': `Linha ${finding.linha}`, children: [pre]});
}

function placeWords(finding) {
  if (!finding.linha) return 'No arquivo inteiro';
  const words = [`Linha ${finding.linha}`];
  if (finding.registro) words.push(`registro ${finding.registro}`);
  if (finding.campo) words.push(`campo ${finding.campo}`);
  if (finding.coluna) {
    const end = finding.coluna + Math.max(finding.largura, 1) - 1;
    words.push(end === finding.coluna ? `coluna ${end}` : `colunas ${finding.coluna} a ${end}`);
  }
  return words.join(', ');
}

function aboutQuestion() {
  return make('p', {children: [make('span', {className: 'aviso', text: 'É uma pergunta do importador. '}),
    'Com Sim, a importação continua; com Não, o arquivo é recusado por ela.']});
}

function drawFinding(entry, finding) {
  const question = finding.tipo === 'aviso';
  const rule = rules.get(finding.regra);
  const item = make('li', {className: question ? 'finding question' : 'finding'});
  item.append(make('h4', {text: rule ? `${finding.regra}: ${rule.titulo}` : finding.regra}));
  item.append(make('p', {className: 'place', text: placeWords(finding) + (finding.valor ? `, valor “${finding.valor}”` : '')}));
  let lines = linesOf(entry, finding, 0);
  if (lines) {
    item.append(lines);
    const button = make('button', {type: 'button', text: 'Mostrar as linhas vizinhas', 'aria-pressed': 'false'});
    button.addEventListener('click', () => {
      const pressed = button.getAttribute('aria-pressed') !== 'true';
      button.setAttribute('aria-pressed', String(pressed));
      const wider = linesOf(entry, finding, pressed ? kAround : 0);
      lines.replaceWith(wider);
      lines = wider;
    });
    item.append(make('p', {className: 'screen-only', children: [button]}));
  }
  item.append(make('p', {className: 'message', text: finding.mensagem.replace(/\r\n?/g, '\n').trim()}));
  if (question) item.append(aboutQuestion());
  if (finding.porque) item.append(make('p', {children: [make('strong', {text: 'Por quê: '}), finding.porque]}));
  if (rule) {
    item.append(make('p', {text: rule.explicacao}));
    item.append(make('p', {children: [make('strong', {text: 'Como corrigir: '}), rule.comoMendar]}));
  }
  if (finding.doImportador) {
    item.append(make('p', {className: 'quiet', text: 'É esta que a importação mostra hoje; as outras só apareceriam depois de corrigida.'}));
  }
  return item;
}

// The number of the declaration to which a line belongs, from 0; -1 for lines before the first one.
function declarationOf(entry, number) {
  let found = -1;
  entry.declarations.forEach(({linha}, i) => { if (linha <= number) found = i; });
  return found;
}

const month = (ref) => (/^\d{6}$/.test(ref) ? `${ref.slice(4)}/${ref.slice(0, 4)}` : ref);

function fillChoices(entry) {
  const used = new Map();
  for (const {regra} of entry.findings) used.set(regra, (used.get(regra) || 0) + 1);
  const ordered = [...used].sort((a, b) => b[1] - a[1] || a[0].localeCompare(b[0]));
  byId('by-rule').replaceChildren(make('option', {value: '', text: 'todas'}), ...ordered.map(([code, times]) =>
    make('option', {value: code, text: `${code} (${times})`})));
  const wrong = new Map();
  for (const finding of entry.findings) {
    const at = declarationOf(entry, finding.linha);
    if (at >= 0) wrong.set(at, (wrong.get(at) || 0) + 1);
  }
  byId('by-declaration').replaceChildren(make('option', {value: '', text: 'todas'}),
    ...[...wrong].sort((a, b) => a[0] - b[0]).map(([at, times]) => {
      const {ie, referencia} = entry.declarations[at];
      const name = ie ? `${ie} ${month(referencia)}` : 'antes da primeira';
      return make('option', {value: String(at), text: `${name} (${times})`});
    }));
  byId('summary').hidden = ordered.length === 0;
  byId('summary').querySelector('tbody').replaceChildren(...ordered.map(([code, times]) => make('tr', {children: [
    make('td', {text: code}), make('td', {text: rules.get(code)?.titulo ?? ''}),
    make('td', {className: 'number', text: String(times)})]})));
}

function chosenFindings() {
  const rule = byId('by-rule').value, declaration = byId('by-declaration').value;
  return shown.findings.filter((finding) => (!rule || finding.regra === rule) &&
    (declaration === '' || declarationOf(shown, finding.linha) === Number(declaration)));
}

function drawFindings(upTo = kPiece) {
  const all = chosenFindings();
  byId('findings').replaceChildren(...all.slice(0, upTo).map((finding) => drawFinding(shown, finding)));
  for (const lines of byId('findings').querySelectorAll('.lines')) {
    const mark = lines.querySelector('mark');
    if (mark) lines.scrollLeft = Math.max(0, mark.offsetLeft - lines.offsetLeft - lines.clientWidth / 3);
  }
  byId('findings-heading').hidden = all.length === 0;
  const more = byId('more');
  more.hidden = all.length <= upTo;
  more.onclick = () => drawFindings(upTo + kPiece);
}

function verdictWords(entry) {
  if (entry.state === 'erro') return entry.problem;
  const faults = entry.findings.filter(({tipo}) => tipo !== 'aviso').length;
  const questions = entry.findings.length - faults;
  const parts = [];
  if (faults) parts.push(count(faults, 'inconsistência', 'inconsistências'));
  if (questions) parts.push(count(questions, 'pergunta', 'perguntas'));
  const what = entry.state === 'aceito' ? 'Arquivo aceito' : 'Arquivo recusado';
  let words = parts.length ? `${what}: ${parts.join(' e ')}.` : `${what}.`;
  if (entry.limited) words += ' O máximo pedido foi alcançado: pode haver mais. Aumente-o nas opções e escolha o arquivo de novo.';
  return words;
}

function show(entry) {
  shown = entry;
  byId('result').hidden = false;
  byId('result-heading').textContent = entry.name;
  byId('verdict').textContent = entry.state ? verdictWords(entry) : 'Ainda na fila.';
  byId('verdict').className = entry.state;
  byId('unexamined').replaceChildren(...(entry.unexamined || []).map((gap) => make('p', {
    className: 'quiet', text: `Não examinado: linhas ${gap.linha} a ${gap.ate}. ${gap.porque}`})));
  byId('tools').hidden = entry.findings.length === 0;
  fillChoices({...entry, declarations: entry.declarations || []});
  drawFindings();
  drawTree(entry);
  drawList();
}

// ---- the file by its declarations and records -------------------------------------------------

// A branch whose content is made when it is opened first.
function branch(summary, className, fill) {
  const details = make('details', {className, children: [make('summary', {text: summary})]});
  details.addEventListener('toggle', () => {
    if (!details.open || details.childElementCount > 1) return;
    fill(details).catch((error) => details.append(make('p', {text: failedSentence(error)})));
  });
  return details;
}

function drawRecord(record) {
  const name = record.registro ? `registro ${record.registro} ${record.nome}` : 'registro desconhecido';
  const item = branch(`Linha ${record.linha}: ${name}`, record.inconsistencias.length ? 'record faulty' : 'record', async (details) => {
    const wrong = new Set(record.inconsistencias.map(({coluna}) => coluna));
    details.append(make('table', {children: [make('tbody', {children: record.campos.map((field) => make('tr', {children: [
      make('th', {scope: 'row', text: field.campo}),
      make('td', {className: 'quiet', text: `${field.coluna}–${field.coluna + field.largura - 1}`}),
      make('td', {children: [wrong.has(field.coluna) ? make('mark', {text: field.texto}) : field.texto]}),
    ]}))})]}));
    for (const finding of record.inconsistencias) {
      details.append(make('p', {className: 'message', text: `${finding.regra}: ${finding.mensagem.trim()}`}));
      if (finding.porque) details.append(make('p', {text: finding.porque}));
    }
  });
  item.style.marginLeft = `${record.nivel}rem`;
  return item;
}

// A long declaration is shown piece by piece.
async function drawRecords(entry, from, to, into) {
  const kRecords = 200;
  await remindEngine();
  const last = Math.min(to, from + kRecords - 1);
  const {registros} = await engine.ask({work: 'records', file: examined().indexOf(entry), from, to: last});
  into.append(...registros.map(drawRecord));
  if (last >= to) return;
  const more = make('button', {type: 'button', text: `Mais registros (linhas ${last + 1} a ${to})`});
  more.addEventListener('click', () => { more.remove(); drawRecords(entry, last + 1, to, into); });
  into.append(more);
}

// The files that the module holds, in its order.
const examined = () => files.filter((entry) => entry.generation !== undefined);

function drawTree(entry) {
  const declarations = entry.declarations || [];
  const tree = byId('tree');
  tree.hidden = declarations.length === 0;
  tree.open = false;
  const end = entry.bytes ? lineStarts(entry).length : 0;
  byId('branches').replaceChildren(...declarations.map(({linha, ie, referencia}, i) => {
    const to = i + 1 < declarations.length ? declarations[i + 1].linha - 1 : end;
    const wrong = entry.findings.filter((finding) => finding.linha >= linha && finding.linha <= to).length;
    const name = ie ? `IE ${ie}, ${month(referencia)}` : 'Antes da primeira declaração';
    const words = wrong ? `, ${count(wrong, 'inconsistência', 'inconsistências')}` : '';
    return branch(`${name} (linhas ${linha} a ${to})${words}`, wrong ? 'record faulty' : 'record',
      (details) => drawRecords(entry, linha, to, details));
  }));
}

// ---- reports ----------------------------------------------------------------------------------

// A worker that took the place of a broken one has to see the files again.
async function remindEngine() {
  const lost = examined().filter((entry) => entry.generation !== engine.generation());
  if (!lost.length) return;
  await engine.ask({work: 'forget'});
  for (const entry of examined()) await examine(entry);
}

async function save() {
  await busy;
  const form = byId('form').value;
  try {
    await remindEngine();
    const text = await engine.text({work: 'report', form, masked: byId('mask').checked});
    if (text.startsWith('{"erro"')) throw new Error(JSON.parse(text).erro);
    const url = URL.createObjectURL(new Blob([text], {type: 'application/octet-stream'}));
    const link = make('a', {href: url, download: `relatorio-tremvik.${form}`});
    link.click();
    setTimeout(() => URL.revokeObjectURL(url), 60000);
    say('O relatório foi salvo onde o navegador guarda os arquivos baixados.');
  } catch (error) {
    say(failedSentence(error));
  }
}

// ---- what a message means ---------------------------------------------------------------------

let asked = 0;

async function search() {
  const query = byId('query').value.trim();
  const mine = ++asked;
  if (!query) {
    byId('found').replaceChildren();
    byId('found-status').textContent = '';
    return;
  }
  const codes = await engine.ask({work: 'search', query});
  if (mine !== asked) return;  // typed on meanwhile
  byId('found-status').textContent = codes.length
    ? `${count(codes.length, 'regra', 'regras')}, a mais provável primeiro.` : 'Nenhuma regra tem essa mensagem.';
  byId('found').replaceChildren(...codes.map((code) => rules.get(code)).filter(Boolean).map((rule) => make('li', {
    className: 'finding question', children: [
      make('h3', {text: `${rule.codigo}: ${rule.titulo}`}),
      make('p', {className: 'message', text: rule.mensagem ?? ''}),
      make('p', {text: rule.explicacao}),
      make('p', {children: [make('strong', {text: 'Como corrigir: '}), rule.comoMendar]}),
    ]})));
}

// ---- wiring -----------------------------------------------------------------------------------

// The files under what was dropped, folders included.
async function dropped(items) {
  const found = [];
  async function walk(entry) {
    if (entry.isFile) found.push(await new Promise((resolve, reject) => entry.file(resolve, reject)));
    if (!entry.isDirectory) return;
    const reader = entry.createReader();
    for (let some; (some = await new Promise((resolve, reject) => reader.readEntries(resolve, reject))).length;) {
      for (const one of some) await walk(one);
    }
  }
  const entries = [...items].map((item) => item.webkitGetAsEntry?.()).filter(Boolean);
  for (const entry of entries) await walk(entry).catch(() => say('Uma parte do que foi solto não pôde ser lida.'));
  return found;
}

function listen() {
  for (const id of ['file', 'folder']) {
    byId(id).addEventListener('change', (event) => {
      take(event.target.files);
      event.target.value = '';  // else the same file could not be chosen again
    });
  }
  const drop = byId('drop');
  drop.addEventListener('dragover', (event) => { event.preventDefault(); drop.classList.add('over'); });
  drop.addEventListener('dragleave', () => drop.classList.remove('over'));
  drop.addEventListener('drop', async (event) => {
    event.preventDefault();
    drop.classList.remove('over');
    take(await dropped(event.dataTransfer.items));
  });
  for (const id of ['by-rule', 'by-declaration']) byId(id).addEventListener('change', () => drawFindings());
  byId('refused-only').addEventListener('change', drawList);
  byId('clear').addEventListener('click', clear);
  byId('save').addEventListener('click', save);
  byId('print').addEventListener('click', () => print());
  byId('query').addEventListener('input', search);
}

async function begin() {
  if (typeof WebAssembly !== 'object' || typeof DecompressionStream !== 'function') {
    return say('Este navegador é antigo demais para esta página. Use uma versão de 2023 ou mais nova.');
  }
  try {
    rules = new Map((await engine.ask({work: 'rules'})).map((rule) => [rule.codigo, rule]));
  } catch (error) {
    return say(`A página não pôde ser preparada (${error.message}).`);
  }
  listen();
  say('Pronto. Escolha ou solte arquivos.');
  document.body.dataset.ready = 'yes';
}

begin();
})();
