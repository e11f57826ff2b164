// Parses the records of each kind into objects of their fields.
import { readFileSync } from 'node:fs';
import { FixedWidthParser } from 'fixed-width-parser';

const layouts = {
@LAYOUT@
};
const lines = {};
for (const name of process.argv.slice(2)) {
  for (const line of readFileSync(name, 'latin1').split('\r\n')) {
    if (line) (lines[line.slice(0, 2)] ??= []).push(line);
  }
}
for (const [kind, records] of Object.entries(lines)) {
  const fields = layouts[kind].map(([name, start, end]) => ({ name, start, width: end - start }));
  const parsed = new FixedWidthParser(fields).parse(records.join('\n'));
  console.log(kind, parsed.length);
  if (kind === '10') console.log('sum', parsed.reduce((sum, record) => sum + Number(record.field3), 0));
}
