// Old pages hold their charts in <embed> or <object> with the plug-in's media type: each gives way to the element, in
// its place, with its attributes and contents.

const mediaType = 'application/x-zelkon-plot';
const selector = ['embed', 'object'].map((name) => `${name}[type="${mediaType}" i][plot]`).join();

function cssLength(text: string): string {
  return /^\s*\d+(\.\d+)?\s*$/.test(text) ? `${text.trim()}px` : text;
}

function upgrade(old: HTMLElement): void {
  const plot = document.createElement('zelkon-plot');
  for (const { name, value } of old.attributes) {
    if (!/^(type|width|height|style|src|data)$/.test(name)) plot.setAttribute(name, value);
  }
  for (const side of ['width', 'height'] as const) {
    const length = old.getAttribute(side);
    if (length !== null) plot.style[side] = cssLength(length);
  }
  // Declarations are taken over one by one, which no content policy objects to.
  for (const property of old.style) {
    plot.style.setProperty(property, old.style.getPropertyValue(property), old.style.getPropertyPriority(property));
  }
  plot.append(...old.childNodes);
  old.replaceWith(plot);
}

function upgradeBelow(root: ParentNode): void {
  for (const old of root.querySelectorAll<HTMLElement>(selector)) upgrade(old);
}

export function upgradeEmbeds(): void {
  upgradeBelow(document);
  new MutationObserver((records) => {
    for (const { addedNodes } of records) {
      for (const node of addedNodes) {
        if (!(node instanceof HTMLElement) || !node.isConnected) continue;
        if (node.matches(selector)) upgrade(node);
        else upgradeBelow(node);
      }
    }
  }).observe(document, { childList: true, subtree: true });
}
