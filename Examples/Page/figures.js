// The account's figures: the categories of the last months, and made-up amounts for the years before them. The made-up
// ones are the same on every visit.

export const months = [
  {
    name: 'October 2026',
    spending: { Rent: 1450, Groceries: 486.2, 'Eating out': 238.75, Transport: 164.3, Utilities: 142.18, Leisure: 121.5, Health: 64.9 },
  },
  {
    name: 'September 2026',
    spending: { Rent: 1450, Groceries: 512.46, 'Eating out': 187.2, Transport: 158.6, Utilities: 128.74, 'Clothes and shoes': 219.95 },
  },
  {
    name: 'August 2026',
    spending: { Rent: 1450, Travel: 982.3, Groceries: 318.05, 'Eating out': 342.6, Transport: 88.1, Utilities: 119.02, Leisure: 96.4, Gifts: 45 },
  },
];

export const sumOf = ({ spending }) => Object.values(spending).reduce((sum, amount) => sum + amount, 0);

const income = 2750;
const lastMonth = Date.UTC(2026, 9, 1);
const day = 24 * 60 * 60 * 1000;

// Between -1 and 1, without a pattern that shows.
function noise(index) {
  const wave = Math.sin(index * 12.9898 + 4.1414) * 43758.5453;
  return 2 * (wave - Math.floor(wave)) - 1;
}

const formats = (options) => new Intl.DateTimeFormat('en-US', { timeZone: 'UTC', ...options });
const long = formats({ month: 'long', year: 'numeric' });
const medium = formats({ month: 'short', year: 'numeric' });
const short = formats({ month: 'short' });
const full = formats({ day: 'numeric', month: 'short', year: 'numeric' });

function monthAmount(date, monthsAgo) {
  if (monthsAgo < months.length) return sumOf(months[monthsAgo]);
  const season = { 6: 520, 7: 610, 11: 780 }[date.getUTCMonth()] ?? 0;
  return 2480 - 5 * monthsAgo + season + 260 * noise(monthsAgo);
}

// The last months up to October 2026, oldest first: what was spent, or what was left of the income.
export function monthly(count, showsSavings) {
  return Array.from({ length: count }, (_, index) => {
    const monthsAgo = count - 1 - index;
    const date = new Date(lastMonth);
    date.setUTCMonth(date.getUTCMonth() - monthsAgo);
    const spent = monthAmount(date, monthsAgo);
    return {
      amount: showsSavings ? income - spent : spent,
      labels: {
        humanX: long.format(date),
        mediumHumanX: medium.format(date),
        shortHumanX: short.format(date),
        shortHumanXSubtitle: String(date.getUTCFullYear()),
      },
    };
  });
}

// Every day of the four years up to the end of October 2026.
export function daily(showsSavings) {
  const end = Date.UTC(2026, 9, 31);
  return Array.from({ length: 1461 }, (_, index) => {
    const date = new Date(end - (1460 - index) * day);
    const season = 22 * Math.sin((2 * Math.PI * (date.getUTCMonth() - 4)) / 12);
    const spent = 82 + season + 9 * Math.sin(index / 23) + 7 * noise(index);
    return { amount: showsSavings ? income / 30.4 - spent : spent, labels: { humanX: full.format(date) } };
  });
}

// One entry for each card payment of a large account. The texts are put together by hand: there are a million.
export function payments(count, showsSavings, currency) {
  return Array.from({ length: count }, (_, index) => {
    const amount = 900 + 500 * Math.sin((7 * index) / count) + 120 * Math.sin((90 * index) / count) + 30 * noise(index);
    const y = (showsSavings ? 800 - amount : amount).toFixed(2);
    return { humanX: `Payment ${index + 1}`, humanY: currency ? `${y} ${currency}` : y, y };
  });
}
