// What a finance application's page does with the chart: hands it a month's figures, colours and drives its own legend,
// and listens to what the chart says.

import { months, sumOf } from './figures.js';
import { element, formatter, make, note } from './page.js';

const money = formatter('USD');
const share = new Intl.NumberFormat('en-US', { style: 'percent', maximumFractionDigits: 1 });
const rows = () => [...element('legend').rows];

function markHovered(index) {
  rows().forEach((row, each) => row.classList.toggle('hovered', each === index));
}

// The chart calls these functions of the page's window.
window.SpendingTrendsHaveDisplayed = () => note('SpendingTrendsHaveDisplayed', []);
window.SpendingTrendsSliceHoverIndex = (index, previous) => {
  note('SpendingTrendsSliceHoverIndex', [index, previous]);
  markHovered(index);
};
window.SpendingTrendsSliceClicked = (index) => {
  note('SpendingTrendsSliceClicked', [index]);
  rows().forEach((row, each) => row.classList.toggle('chosen', each === index));
};

function legendRow(pie, entry, index, count, total) {
  const color = {};
  pie.SliceColorAtIndex(index, count, color);
  const swatch = make('span', { className: 'swatch' });
  swatch.style.backgroundColor = `rgb(${[color.red, color.green, color.blue].map((part) => Math.round(part * 255)).join(' ')})`;
  const category = make('button', { className: 'category', type: 'button' }, swatch, make('span', { className: 'name', textContent: entry.key }));
  const row = make(
    'tr',
    {},
    make('th', { scope: 'row' }, category),
    make('td', { className: 'figure', textContent: money.format(entry.value) }),
    make('td', { className: 'figure', textContent: share.format(entry.value / total) }),
  );
  const hover = (isOver) => () => {
    pie.HoverEntryAtIndex(isOver, index);
    markHovered(isOver ? index : -1);
  };
  row.addEventListener('pointerenter', hover(true));
  row.addEventListener('pointerleave', hover(false));
  category.addEventListener('focus', hover(true));
  category.addEventListener('blur', hover(false));
  return row;
}

function show(pie, index) {
  const month = months[index];
  const entries = Object.entries(month.spending).map(([key, value]) => ({ key, value }));
  const total = sumOf(month);
  pie.SetPlotData(entries);
  element('total').textContent = money.format(total);
  const before = months[index + 1];
  const change = before ? (total - sumOf(before)) / sumOf(before) : 0;
  element('change').textContent = before ? `${share.format(Math.abs(change))} ${change < 0 ? 'less' : 'more'} than in ${before.name}` : '';
  element('legend').replaceChildren(...entries.map((entry, each) => legendRow(pie, entry, each, entries.length, total)));
}

await customElements.whenDefined('zelkon-plot');
const pie = element('pie');
const select = element('month');
select.append(...months.map(({ name }, index) => make('option', { value: index, textContent: name })));
select.addEventListener('change', () => show(pie, Number(select.value)));
pie.SetPlotOptions([{ key: 'CurrencyID', value: 'USD' }]);
show(pie, 0);
