// What both halves of the report use: elements by their id, new elements, amounts as text, and the list of calls.

export const element = (id) => document.getElementById(id);

export function make(name, properties = {}, ...children) {
  const made = Object.assign(document.createElement(name), properties);
  made.append(...children);
  return made;
}

// Amounts in that currency, or plain numbers without one.
export function formatter(currency, maximumFractionDigits) {
  return new Intl.NumberFormat('en-US', currency ? { style: 'currency', currency, maximumFractionDigits } : { maximumFractionDigits });
}

export function note(name, values) {
  const calls = element('calls');
  const time = make('time', { textContent: new Date().toLocaleTimeString('en-GB') });
  calls.prepend(make('li', {}, time, `${name}(${values.join(', ')})`));
  while (calls.children.length > 6) calls.lastChild.remove();
}
