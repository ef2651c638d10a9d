// Plays a scenario on the page's own module with a clock that the test sets, and gives the transcript and the layer trees
// that the command gives for the same file.
import type { Heap } from '../../Backends/Canvas/heap';
import { flattenData, flattenOptions, flattenValues } from '../../Hosts/Web/flatten';
import { Instance } from '../../Hosts/Web/instance';

interface Step {
  call?: string;
  arguments?: unknown[];
  wait?: number;
  mouse?: string;
  at?: [number, number];
  layers?: string;
  snapshot?: string;
  print?: string;
  frame?: [number, number];
  resize?: [number, number];
  scroll?: [number, number];
  lifecycle?: string;
}

interface Scenario {
  plot: string;
  size: [number, number];
  steps: Step[];
}

interface ScenarioModule {
  zelkon_scenario_literal(): void;
  zelkon_scenario_frame(id: number, width: number, height: number): void;
  zelkon_scenario_stop(id: number): void;
  zelkon_scenario_layers(id: number): number;
  zelkon_scenario_layers_size(): number;
}

const largestInteger = 2 ** 63;

// As the command prints it: the largest integer is exact there and the nearest number here.
function text(value: unknown): string {
  if (value === largestInteger) return '9223372036854775807';
  return JSON.stringify(value, value && typeof value === 'object' ? Object.keys(value).sort() : undefined);
}

interface Played {
  transcript: string[];
  layers: Record<string, unknown>;
  // PNG pictures as data addresses.
  snapshots: Record<string, string>;
}

export async function play(scenario: Scenario, scale = 1): Promise<Played> {
  const transcript: string[] = [];
  const layers: Record<string, unknown> = {};
  const snapshots: Record<string, string> = {};
  let now = 0;
  const note = (kind: string, line: string) => transcript.push(`${now.toFixed(3)} ${kind} ${line}`);
  const warn = console.warn;
  console.warn = (line: string) => note('log', line);
  const instance = await Instance.start({
    pageCall: (_plot, name, values) => note('page', `${name}(${values.map(text).join(', ')})`),
    instanceFailed: (error) => note('failed', String(error)),
  });
  const { module, heap } = instance as unknown as { module: ScenarioModule; heap: Heap };
  module.zelkon_scenario_literal();
  instance.setScreenScale(scale);
  const screen = document.createElement('canvas');
  const id = instance.create(scenario.plot, instance.canvas.bindScreen(screen), ...scenario.size);
  let size = scenario.size;
  let offset: [number, number] = [0, 0];

  const turn = (time: number) => {
    instance.beginTurn(time);
    now = time;
    instance.compose(id);
    instance.endTurn();
  };
  const call = (name: string, values: unknown[]) => {
    const [first] = values;
    if (name === 'SetPlotOptions') instance.call(id, name, flattenOptions(first));
    else if (name === 'SetPlotData') instance.call(id, name, flattenData(scenario.plot, first));
    else instance.call(id, name, flattenValues(values));
    const written = values.find((value) => value && typeof value === 'object' && !Array.isArray(value));
    if (written) note('result', `${name} ${text(written)}`);
  };
  // What the page's scroller leaves visible of the chart.
  const showScrolledPart = () => {
    const [left, top] = offset.map((each) => Math.max(0, each));
    const [right, bottom] = offset.map((each, side) => Math.min(size[side], each + size[side]));
    const isInSight = right > left && bottom > top;
    instance.setVisibleRect(id, ...(isInSight ? ([left, top, right - left, bottom - top] as const) : ([0, 0, 0, 0] as const)));
  };
  const dump = () => {
    const at = module.zelkon_scenario_layers(id);
    return JSON.parse(new TextDecoder().decode(heap.bytes(at, module.zelkon_scenario_layers_size())));
  };

  for (const step of scenario.steps) {
    if (step.call) call(step.call, step.arguments ?? []);
    if (step.wait !== undefined) {
      const start = now;
      const frames = Math.floor(step.wait * 60 + 1e-6);
      for (let frame = 1; frame <= frames; ++frame) turn(start + frame / 60);
      if (start + step.wait > now + 1e-9) turn(start + step.wait);
    }
    if (step.mouse === 'exited') instance.mouseExited(id);
    else if (step.mouse === 'down') instance.mouseDown(id, ...step.at!);
    else if (step.mouse) instance.mouseMoved(id, ...step.at!);
    if (step.print) {
      turn(now);
      const paper = instance.canvas.bindScreen(document.createElement('canvas'));
      instance.print(id, paper, scale);
      instance.canvas.unbindScreen(paper);
    }
    if (step.layers) {
      turn(now);
      layers[step.layers] = dump();
    }
    if (step.snapshot) {
      turn(now);
      snapshots[step.snapshot] = screen.toDataURL('image/png');
    }
    if (step.frame) {
      size = step.frame;
      module.zelkon_scenario_frame(id, ...size);
      showScrolledPart();
    }
    if (step.resize) {
      turn(now);
      size = step.resize;
      instance.setSize(id, ...size);
      showScrolledPart();
      turn(now);
    }
    if (step.scroll) {
      offset = step.scroll;
      showScrolledPart();
    }
    if (step.lifecycle === 'stop') module.zelkon_scenario_stop(id);
    if (step.lifecycle === 'destroy') instance.destroy(id);
  }
  console.warn = warn;
  return { transcript, layers, snapshots };
}
