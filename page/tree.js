// The file by its declarations and records.

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
