// Prints "passed failed skipped" of a ctest report in JUnit's format, and to standard error what the failed tests said.
import { readFileSync } from 'node:fs';
import { pathToFileURL } from 'node:url';

// Tests that were switched off did not run, so they count as skipped.
export function countsOfJUnit(text) {
  const suite = /<testsuite\b[^>]*>/.exec(text)?.[0];
  if (!suite) throw new Error('no test suite in the report');
  const number = (name) => Number(new RegExp(`\\b${name}="(\\d+)"`).exec(suite)?.[1] ?? 0);
  const failed = number('failures');
  const skipped = number('skipped') + number('disabled');
  return [number('tests') - failed - skipped, failed, skipped];
}

const entities = { amp: '&', lt: '<', gt: '>', quot: '"', apos: "'" };
const plain = (text) => text.replace(/&(amp|lt|gt|quot|apos);/g, (_, name) => entities[name]);

// The name and the output of each failed test.
export function failuresOfJUnit(text) {
  return [...text.matchAll(/<testcase\b([^>]*[^/>])>([^]*?)<\/testcase>/g)]
    .filter(([, attributes]) => /\bstatus="fail"/.test(attributes))
    .map(([, attributes, content]) => ({
      name: plain(/\bname="([^"]*)"/.exec(attributes)[1]),
      output: plain(/<system-out>([^]*?)<\/system-out>/.exec(content)?.[1] ?? '').trim(),
    }));
}

if (process.argv[1] && import.meta.url === pathToFileURL(process.argv[1]).href) {
  const report = readFileSync(process.argv[2], 'utf8');
  for (const { name, output } of failuresOfJUnit(report)) {
    console.error(`FAILED ${name}\n${output}`);
  }
  console.log(countsOfJUnit(report).join(' '));
}
