// Which chart a name stands for is decided in one place, and hosts ask a view for what it can do, not for what it is.
import assert from 'node:assert/strict';
import { test } from 'node:test';
import { readSources } from './sources.mjs';

const factory = 'Classes/Views/PlotView.cpp';
const comparison = /[=!]=\s*(k\w*Pie|"(pie|spendingOverTimeBarOrLine)")|"(pie|spendingOverTimeBarOrLine)"\s*[=!]=|compare\("(pie|spendingOverTimeBarOrLine)"\)/;
const cast = /dynamic_(pointer_)?cast<(const )?(PiePlotView|BarOrLineView|SpendingOverTimeBarView|BarPlot|LinePlot)\b/;

function found(sources, pattern) {
  const places = [];
  for (const [path, text] of sources) {
    text.split('\n').forEach((line, index) => {
      if (path !== factory && pattern.test(line)) places.push(`${path}:${index + 1}`);
    });
  }
  return places;
}

test('no plot is compared by its name outside the factory', () => {
  assert.deepEqual(found(readSources('Classes', 'Platform', 'Backends', 'Hosts'), comparison), []);
});

test('no host asks a view for its class', () => {
  assert.deepEqual(found(readSources('Hosts'), cast), []);
});

test('comparisons and casts are seen', () => {
  const sources = new Map([
    ['Hosts/A.cpp', 'if (plot_ != "pie") x();\nif (name == kPie) y();\nif ("spendingOverTimeBarOrLine" == name) z();\n'],
    ['Hosts/B.cpp', 'dynamic_cast<const BarOrLineView*>(&view);\n'],
  ]);
  assert.deepEqual(found(sources, comparison), ['Hosts/A.cpp:1', 'Hosts/A.cpp:2', 'Hosts/A.cpp:3']);
  assert.deepEqual(found(sources, cast), ['Hosts/B.cpp:1']);
});
