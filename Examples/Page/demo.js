const said = document.querySelector('#said');
const say = (text) => {
  said.textContent = [...said.textContent.split('\n').filter(Boolean).slice(-7), text].join('\n');
};

// The charts call these functions of the page's window.
window.GraphHasDisplayed = () => say('GraphHasDisplayed()');
window.SpendingTrendsHaveDisplayed = () => say('SpendingTrendsHaveDisplayed()');
window.SpendingTrendsSliceHoverIndex = (...values) => say(`SpendingTrendsSliceHoverIndex(${values.join(', ')})`);
window.SpendingTrendsSliceClicked = (...values) => say(`SpendingTrendsSliceClicked(${values.join(', ')})`);

function addLegend(pie, entries) {
  const legend = document.querySelector('#legend');
  entries.forEach(({ key, value }, index) => {
    const color = {};
    pie.SliceColorAtIndex(index, entries.length, color);
    const swatch = document.createElementNS('http://www.w3.org/2000/svg', 'svg');
    swatch.setAttribute('class', 'swatch');
    const square = document.createElementNS('http://www.w3.org/2000/svg', 'rect');
    square.setAttribute('width', '100%');
    square.setAttribute('height', '100%');
    square.setAttribute('fill', `rgb(${[color.red, color.green, color.blue].map((part) => Math.round(part * 255))})`);
    swatch.append(square);
    const item = document.createElement('li');
    item.append(swatch, `${key}: ${value}`);
    item.addEventListener('pointerenter', () => pie.HoverEntryAtIndex(true, index));
    item.addEventListener('pointerleave', () => pie.HoverEntryAtIndex(false, index));
    legend.append(item);
  });
}

await customElements.whenDefined('zelkon-plot');
for (const name of ['pie', 'bars', 'line']) {
  const chart = document.getElementById(name);
  const { options, data } = await (await fetch(`${name}.json`)).json();
  chart.SetPlotOptions(options);
  chart.SetPlotData(data);
  if (name === 'pie') addLegend(chart, data);
}
