const months = new Map([
  [
    'April',
    [
      ['Rent', 1200],
      ['Groceries', 412.5],
      ['Travel', 260],
      ['Clothing', 185.75],
      ['Utilities', 148.2],
      ['Dining out', 96.4],
    ],
  ],
  [
    'May',
    [
      ['Rent', 1200],
      ['Groceries', 388.1],
      ['Car repair', 640],
      ['Utilities', 121.65],
      ['Dining out', 152.3],
      ['Gifts', 75],
      ['Books', 48.9],
      ['Pharmacy', 31.2],
    ],
  ],
  [
    'June',
    [
      ['Rent', 1200],
      ['Holiday', 1480.4],
      ['Groceries', 301.75],
    ],
  ],
  ['July', []],
]);

const pie = document.querySelector('#pie');
const legend = document.querySelector('#legend');
const said = document.querySelector('#said');
const month = document.querySelector('#month');
const money = new Intl.NumberFormat('en-US', { style: 'currency', currency: 'USD' });
const share = new Intl.NumberFormat('en-US', { style: 'percent', maximumFractionDigits: 1 });
const newestCalls = 8;

function say(call) {
  said.textContent = [call, ...said.textContent.split('\n').filter(Boolean)].slice(0, newestCalls).join('\n');
}

function point(index) {
  [...legend.rows].forEach((row, each) => row.classList.toggle('pointed', each === index));
}

// The chart calls these functions of its page's window.
window.SpendingTrendsHaveDisplayed = () => say('SpendingTrendsHaveDisplayed()');
window.SpendingTrendsSliceHoverIndex = (index, previous) => {
  point(index);
  say(`SpendingTrendsSliceHoverIndex(${index}, ${previous})`);
};
window.SpendingTrendsSliceClicked = (index) => say(`SpendingTrendsSliceClicked(${index})`);

function swatch(index, count) {
  const color = {};
  pie.SliceColorAtIndex(index, count, color);
  const picture = document.createElementNS('http://www.w3.org/2000/svg', 'svg');
  picture.setAttribute('class', 'swatch');
  picture.setAttribute('aria-hidden', 'true');
  const square = document.createElementNS('http://www.w3.org/2000/svg', 'rect');
  square.setAttribute('width', '100%');
  square.setAttribute('height', '100%');
  square.setAttribute('fill', `rgb(${[color.red, color.green, color.blue].map((part) => Math.round(part * 255))})`);
  picture.append(square);
  return picture;
}

function showLegend(entries) {
  const total = entries.reduce((sum, [, amount]) => sum + amount, 0);
  legend.replaceChildren();
  entries.forEach(([name, amount], index) => {
    const row = legend.insertRow();
    const heading = document.createElement('th');
    heading.scope = 'row';
    heading.append(swatch(index, entries.length), name);
    row.append(heading);
    for (const text of [money.format(amount), share.format(amount / total)]) {
      const cell = row.insertCell();
      cell.className = 'amount';
      cell.textContent = text;
    }
    row.addEventListener('pointerenter', () => {
      point(index);
      pie.HoverEntryAtIndex(true, index);
    });
    row.addEventListener('pointerleave', () => {
      point(-1);
      pie.HoverEntryAtIndex(false, index);
    });
  });
  document.querySelector('#total').textContent = money.format(total);
}

function show(name) {
  const entries = months.get(name);
  pie.SetPlotData(entries.map(([key, value]) => ({ key, value })));
  showLegend(entries);
}

await customElements.whenDefined('zelkon-plot');
for (const name of months.keys()) {
  month.add(new Option(name));
}
month.addEventListener('change', () => show(month.value));
show(month.value);
