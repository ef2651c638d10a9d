// Prints "passed failed skipped" of a ctest report in JUnit's format.
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

if (process.argv[1] && import.meta.url === pathToFileURL(process.argv[1]).href) {
  console.log(countsOfJUnit(readFileSync(process.argv[2], 'utf8')).join(' '));
}
