#!/usr/bin/env node
// Draws the three pictures of the pie's floor shadow beside this file: a soft black strip, twice the 17 points it is
// shown at, as left cap, stretchable centre and right cap. The last column of the left cap, every column of the centre
// and the first column of the right cap are equal, so that the pieces meet without a seam however they are stretched.
// Run it with node; there is nothing to install.
import { writeFileSync } from 'node:fs';
import { deflateSync } from 'node:zlib';

const scale = 2; // pixels per point
const height = 17 * scale;
const capWidth = 98 * scale;
const centerWidth = 4;
const peakAlpha = 0.35;
const peakPlace = 1 / 3; // of the height, from the top

const smooth = (t) => t * t * t * (t * (6 * t - 15) + 10);

// How dark a row is, 0...1, at its middle: softly up from the top edge, softly down to the bottom edge.
function rowWeight(y) {
  const place = (y + 0.5) / height;
  return smooth(place < peakPlace ? place / peakPlace : (1 - place) / (1 - peakPlace));
}

// How dark a column of the left cap is, 0...1: nothing at the outer edge, 1 in the last column.
const columnWeight = (x) => smooth(x / (capWidth - 1));

// Grey and alpha, 8 bits each, rows from the top; each pixel as its difference to the one on its left, which packs well.
function png(width, alphaAt) {
  const rows = Buffer.alloc(height * (1 + 2 * width));
  for (let y = 0; y < height; y += 1) {
    const row = y * (1 + 2 * width);
    rows[row] = 1;
    for (let x = 0, last = 0; x < width; x += 1) {
      const alpha = Math.round(255 * peakAlpha * rowWeight(y) * alphaAt(x));
      rows[row + 2 + 2 * x] = alpha - last;
      last = alpha;
    }
  }
  const header = Buffer.alloc(13);
  header.writeUInt32BE(width, 0);
  header.writeUInt32BE(height, 4);
  header[8] = 8; // bits
  header[9] = 4; // grey with alpha
  const signature = Buffer.from([0x89, 0x50, 0x4e, 0x47, 0x0d, 0x0a, 0x1a, 0x0a]);
  const pixels = deflateSync(rows, { level: 9 });
  return Buffer.concat([signature, chunk('IHDR', header), chunk('IDAT', pixels), chunk('IEND', Buffer.alloc(0))]);
}

function chunk(type, data) {
  const body = Buffer.concat([Buffer.from(type, 'latin1'), data]);
  const length = Buffer.alloc(4);
  length.writeUInt32BE(data.length);
  const check = Buffer.alloc(4);
  check.writeUInt32BE(crc32(body));
  return Buffer.concat([length, body, check]);
}

function crc32(bytes) {
  let crc = 0xffffffff;
  for (const byte of bytes) {
    crc ^= byte;
    for (let bit = 0; bit < 8; bit += 1) crc = crc & 1 ? (crc >>> 1) ^ 0xedb88320 : crc >>> 1;
  }
  return (crc ^ 0xffffffff) >>> 0;
}

const save = (name, bytes) => writeFileSync(new URL(name, import.meta.url), bytes);
save('shadow_left.png', png(capWidth, columnWeight));
save('shadow_center.png', png(centerWidth, () => 1));
save('shadow_right.png', png(capWidth, (x) => columnWeight(capWidth - 1 - x)));
