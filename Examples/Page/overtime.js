// Amounts over time. A chart that is shown keeps its data and options, so the page puts a fresh element in its place
// whenever the reader asks for something else.
import { daily, monthly, payments } from './figures.js';
import { element, formatter, note } from './page.js';

const controls = element('overtime-controls');
const many = 1_000_000;
const whole = formatter('', 0);

window.GraphHasDisplayed = () => note('GraphHasDisplayed', []);

function entriesOf(points, money) {
  return points.map(({ amount, labels }) => ({ ...labels, humanY: money.format(amount), y: amount.toFixed(2) }));
}

function embed(options, entries) {
  const chart = element('overtime').cloneNode(true);
  element('overtime').replaceWith(chart);
  chart.SetPlotOptions(Object.entries(options).map(([key, value]) => ({ key, value })));
  const start = performance.now();
  chart.SetPlotData(entries);
  return performance.now() - start;
}

function show() {
  const chosen = new FormData(controls);
  const currency = chosen.get('currency');
  const showsSavings = chosen.get('measure') === 'saved';
  const period = chosen.get('period');
  const options = {
    DisplayXLabels: chosen.has('periods'),
    DisplayYLabels: chosen.has('amounts'),
    YTickMarksExtendFullWidth: chosen.has('gridlines'),
    AllValuesPositive: chosen.has('positive'),
  };
  if (currency) options.CurrencyID = currency;
  const money = formatter(currency);
  let entries;
  if (period === 'many') entries = payments(many, showsSavings, currency);
  else entries = entriesOf(period === 'days' ? daily(showsSavings) : monthly(Number(period), showsSavings), money);
  const taken = embed(options, entries);
  const average = entries.reduce((sum, { y }) => sum + Number(y), 0) / entries.length;
  element('average').textContent = money.format(average);
  element('span').textContent = `on average, ${entries[0].humanX} to ${entries.at(-1).humanX}`;
  element('taken').textContent = `${whole.format(entries.length)} entries, taken in within ${whole.format(Math.ceil(taken))} ms`;
}

// The reader drags the report's right edge, or moves it with the arrow keys.
function makeGrip(grip, report) {
  const least = 340;
  const most = () => Math.floor(report.parentElement.clientWidth - report.offsetLeft);
  const setWidth = (width) => {
    const whole = Math.round(Math.min(Math.max(width, least), Math.max(least, most())));
    report.style.width = `${whole}px`;
    tell();
  };
  const tell = () => {
    grip.setAttribute('aria-valuemin', least);
    grip.setAttribute('aria-valuemax', Math.max(least, most()));
    grip.setAttribute('aria-valuenow', report.offsetWidth);
  };
  let offset = 0;
  grip.addEventListener('pointerdown', (event) => {
    grip.setPointerCapture(event.pointerId);
    offset = report.offsetWidth - event.clientX;
    event.preventDefault();
    grip.focus({ focusVisible: false });
  });
  grip.addEventListener('pointermove', (event) => {
    if (grip.hasPointerCapture(event.pointerId)) setWidth(event.clientX + offset);
  });
  grip.addEventListener('keydown', (event) => {
    const step = { ArrowLeft: -20, ArrowRight: 20 }[event.key];
    if (!step) return;
    event.preventDefault();
    setWidth(report.offsetWidth + step);
  });
  tell();
}

await customElements.whenDefined('zelkon-plot');
controls.addEventListener('change', show);
controls.addEventListener('submit', (event) => event.preventDefault());
element('many').addEventListener('click', () => {
  for (const radio of controls.elements.period) radio.checked = radio.value === 'many';
  show();
});
makeGrip(element('grip'), element('report'));
show();
