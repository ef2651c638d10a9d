// The finished pie as the platform's formulas give it, for comparison with the page's pixels.

// The hues of three slices at saturation 0.75 and brightness 0.82.
export const threeColors = [
  [0.205, 0.2296, 0.82],
  [0.82, 0.205, 0.2419],
  [0.2542, 0.82, 0.205],
];

export const radiusOf = (width, height) => Math.min(width, height - 17) * 0.5 - 10;

// The point on a slice's bisector at a part of the radius, from the view's top left corner, and the same with y up.
export function bisectorPoint(fractions, index, width, height, part = 0.5) {
  const before = fractions.slice(0, index).reduce((sum, each) => sum + each, 0);
  const angle = (before + fractions[index] / 2) * 2 * Math.PI;
  const radius = radiusOf(width, height) * part;
  const x = width / 2 + Math.cos(angle) * radius;
  const up = (height - 17) / 2 + Math.sin(angle) * radius;
  return { x, y: height - 17 - up, up };
}

// Gaussian gradient: smoothstep of the distance by the radius.
function veil(x, y, centerX, centerY, radius) {
  const t = Math.min(1, Math.hypot(x - centerX, y - centerY) / radius);
  return t * t * (3 - 2 * t);
}

// A slice's colour under the gloss, 0 to 255: the dark and the light disc flattened, then blended in overlay mode.
export function glossed(color, { x, up }, width, height) {
  const radius = radiusOf(width, height);
  const [centerX, centerY] = [width / 2, (height - 17) / 2];
  const dark = 0.5 * veil(x, up, centerX + 0.77 * radius, centerY + 0.92 * radius, 1.95 * radius);
  const light = 0.7 * veil(x, up, centerX - 0.72 * radius, centerY - 0.56 * radius, 1.95 * radius);
  const alpha = light + dark * (1 - light);
  const source = light / alpha;
  return color.map((backdrop) => {
    const blended = backdrop <= 0.5 ? 2 * backdrop * source : 1 - 2 * (1 - backdrop) * (1 - source);
    return 255 * ((1 - alpha) * backdrop + alpha * blended);
  });
}
