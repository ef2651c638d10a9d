// Loads the module and then defines the element, so that every call of a page is synchronous from then on:
// customElements.whenDefined('zelkon-plot') tells a page when.
import { ZelkonPlot } from './element';
import { upgradeEmbeds } from './embed';
import { Stage } from './stage';

if (!customElements.get('zelkon-plot')) {
  ZelkonPlot.stage = await Stage.open();
  customElements.define('zelkon-plot', ZelkonPlot);
  upgradeEmbeds();
}
