// Months of amounts over time, and what tests ask of the chart that shows them.

const names = ['January', 'February', 'March', 'April', 'May', 'June', 'July', 'August', 'September', 'October', 'November', 'December'];

// Ten points a month and forty between fit up to twelve months into 700 points; more become a line.
export function months(count, amountOf = (index) => 400 + 300 * Math.sin(index)) {
  return Array.from({ length: count }, (_, index) => {
    const name = names[index % 12];
    const year = String(2009 + Math.floor(index / 12));
    const y = amountOf(index).toFixed(2);
    return {
      humanX: `${name} ${year}`,
      mediumHumanX: `${name.slice(0, 3)} ${year}`,
      shortHumanX: name.slice(0, 3),
      shortHumanXSubtitle: year,
      humanY: `$${y}`,
      y,
    };
  });
}

export const chart = '<zelkon-plot id="chart" plot="spendingOverTimeBarOrLine" aria-label="Spending"></zelkon-plot>';

// For the page: its chart is 700 by 320 points from the beginning.
export const script = `
document.adoptedStyleSheets = [new CSSStyleSheet()];
document.adoptedStyleSheets[0].replaceSync('#chart { display: block; width: 700px; height: 320px }');
const shown = async (count = 1) => {
  for (const from = Date.now(); calls.filter(([name]) => name === 'GraphHasDisplayed').length < count; ) {
    if (Date.now() - from > 20_000) throw new Error('The chart does not say that it has displayed.');
    await frames(1);
  }
  await frames(3);
};
const show = async (data) => {
  chart.SetPlotData(data);
  await shown();
};
// A digest of what is shown once everything has come to rest: two pictures are the same then.
const picture = async (element = chart) => {
  const canvas = element.shadowRoot.querySelector('canvas');
  for (let before; ; ) {
    await frames(3);
    const now = [...new Uint8Array(await crypto.subtle.digest('SHA-256', new TextEncoder().encode(canvas.toDataURL())))].map((byte) => byte.toString(16)).join('');
    if (now === before) return now;
    before = now;
    await new Promise((resolve) => setTimeout(resolve, 50));
  }
};
const heard = () => chart.shadowRoot.querySelector('[aria-live]').textContent;
`;
