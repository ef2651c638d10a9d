// Prints "passed failed skipped" of a report of node's test runner in TAP.
import { readFileSync } from 'node:fs';
import { pathToFileURL } from 'node:url';

// A cancelled test is one that did not end, which is a failure; one marked as still to be done was not run to any purpose.
export function countsOfTap(text) {
  const number = (name) => Number(new RegExp(`^# ${name} (\\d+)$`, 'm').exec(text)?.[1] ?? 0);
  if (!/^# tests \d+$/m.test(text)) throw new Error('no summary in the report');
  return [number('pass'), number('fail') + number('cancelled'), number('skipped') + number('todo')];
}

if (process.argv[1] && import.meta.url === pathToFileURL(process.argv[1]).href) {
  console.log(countsOfTap(readFileSync(process.argv[2], 'utf8')).join(' '));
}
