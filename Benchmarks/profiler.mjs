// Takes CPU profiles of a page for the benchmarks' option --profile.
import { writeFileSync } from 'node:fs';

const interval = 100; // microseconds between samples
const mostFunctions = 30;

// Starts profiling the page. The function that it answers ends that, writes the profile to the file, for the browser's
// developer tools, and prints the functions that took most of the time, in milliseconds.
export async function startProfiling(page, file) {
  const tools = await page.context().newCDPSession(page);
  await tools.send('Profiler.enable');
  await tools.send('Profiler.setSamplingInterval', { interval });
  await tools.send('Profiler.start');
  return async () => {
    const { profile } = await tools.send('Profiler.stop');
    writeFileSync(file, JSON.stringify(profile));
    printFunctions(profile);
  };
}

function printFunctions({ nodes, samples, timeDeltas }) {
  const own = new Map();
  const names = new Map(nodes.map(({ id, callFrame }) => [id, `${callFrame.functionName || '(anonymous)'} ${callFrame.url.split('/').pop()}:${callFrame.lineNumber + 1}`]));
  samples.forEach((id, i) => own.set(names.get(id), (own.get(names.get(id)) ?? 0) + timeDeltas[i] / 1000));
  [...own]
    .filter(([name]) => !name.startsWith('(idle)') && !name.startsWith('(program)'))
    .sort((a, b) => b[1] - a[1])
    .slice(0, mostFunctions)
    .forEach(([name, time]) => console.log(time.toFixed(1).padStart(9), name));
}
