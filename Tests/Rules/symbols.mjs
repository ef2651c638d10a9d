// Finds the variables of a whole process among the symbols of compiled archives:
//   node Tests/Rules/symbols.mjs ARCHIVE...
// prints those that are not stated below and exits with 1 when there are any, or when a stated one is there no more.
import { execFileSync } from 'node:child_process';
import { fileURLToPath } from 'node:url';

// The session that is current on a thread.
const current = 'zelkon::PlatformSession::current_';

// Constants that are made at their first use or at the start, and never change: shared immutable objects and texts.
// Without the parameters of the functions they are in.
export const constants = [
  'zelkon::(anonymous namespace)::Stack::top::none',
  'zelkon::(anonymous namespace)::animatableKeys',
  'zelkon::(anonymous namespace)::attributesAt::none',
  'zelkon::(anonymous namespace)::breakOf::ranges',
  'zelkon::(anonymous namespace)::kKeys',
  'zelkon::(anonymous namespace)::noRuns::runs',
  'zelkon::(anonymous namespace)::noText::text',
  'zelkon::(anonymous namespace)::textOrNothing::nothing',
  'zelkon::BarOrLineView::drawLayer::gradient',
  'zelkon::BarPlot::drawLayer::downward',
  'zelkon::BarPlot::drawLayer::upward',
  'zelkon::BarPlot::renderBackground::gradient',
  'zelkon::BarPlot::xLabelAttributes::result',
  'zelkon::BarPlot::yLabelAttributes::result',
  'zelkon::CGColorSpaceCalibratedRGB::space',
  'zelkon::CGColorSpaceCalibratedWhite::space',
  'zelkon::CGColorSpaceDeviceGray::space',
  'zelkon::CGColorSpaceDeviceRGB::space',
  'zelkon::CGColorSpaceGenericGray::space',
  'zelkon::CGColorSpaceGenericRGB::space',
  'zelkon::CGContext::setShadow::defaultColor',
  'zelkon::CashFlowPlot::defaultTextColor::color',
  'zelkon::FontFaceHelvetica::face',
  'zelkon::FontFaceLucidaGrande::face',
  'zelkon::FontFaceLucidaGrandeBold::face',
  'zelkon::LinePlot::drawLayer::gradient',
  'zelkon::PiePlotView::_textLayerWithLabel::backgroundColor',
  'zelkon::PiePlotView::_textLayerWithLabel::textColor',
  'zelkon::gridlines::selfTest::cases',
  'zelkon::kCGColorBlack::color',
  'zelkon::kCGColorClear::color',
  'zelkon::kCGColorWhite::color',
];

// "A::f(B (*)(int)) const::x" without what stands in parentheses, the anonymous namespace aside.
function withoutParameters(name) {
  let depth = 0;
  let result = '';
  for (const part of name.replaceAll('(anonymous namespace)', '@').split(/([()])/)) {
    if (part === '(') depth += 1;
    else if (part === ')') depth -= 1;
    else if (depth === 0) result += part;
  }
  return result.replaceAll(/ const(?=::)/g, '').replaceAll('@', '(anonymous namespace)');
}

// The variables that can be written to, out of what `objdump --syms --demangle` prints. Tables of addresses that the
// loader fills in and then locks, and the compiler's own references, are none.
export function variablesOf(listing) {
  const found = new Set();
  for (const line of listing.split('\n')) {
    const match = /^[0-9a-f]{8,} .{7} (\S+)\t[0-9a-f]{8,} +(?:\.hidden )?(.+)$/.exec(line);
    if (!match) continue;
    const [, section, name] = match;
    if (!/^\.t?(bss|data)\b/.test(section) || section.startsWith('.data.rel.ro')) continue;
    if (section === name || name.startsWith('DW.ref.')) continue;
    found.add(withoutParameters(name.replace(/^guard variable for /, '')));
  }
  return found;
}

export function objectionsTo(variables) {
  const stated = new Set([current, ...constants]);
  return [
    ...[...variables].filter((name) => !stated.has(name)).map((name) => `${name} is kept for the whole process`),
    ...[...stated].filter((name) => !variables.has(name)).map((name) => `${name} is stated and not there`),
  ];
}

if (process.argv[1] === fileURLToPath(import.meta.url)) {
  const archives = process.argv.slice(2);
  const listing = execFileSync('objdump', ['--syms', '--demangle', ...archives], { encoding: 'utf8', maxBuffer: 1 << 30 });
  const found = objectionsTo(variablesOf(listing));
  for (const line of found) console.error(line);
  process.exitCode = found.length === 0 ? 0 : 1;
}
