// The page's behaviour: choose a siphon and see it in the picture, search, play the firings that lead into the
// deadlock. The net's data stand in the element "data"; what comes from them is put into the document as text,
// never as markup.
"use strict";
(() => {
const data = JSON.parse(document.getElementById("data").textContent);
const byId = (id) => document.getElementById(id);
const svg = document.querySelector("svg.net");
const svgNamespace = "http://www.w3.org/2000/svg";
const placeNodes = data.places.map((place, number) => byId("p" + number));
const transitionNodes = data.transitions.map((transition, number) => byId("t" + number));

// ---- The chosen siphon

const clearClass = (name) => svg.querySelectorAll("." + name).forEach((node) => node.classList.remove(name));

function showPlaces(places) {
  clearClass("siphon");
  clearClass("drains");
  const inside = new Set(places);
  places.forEach((place) => placeNodes[place].classList.add("siphon"));
  if (inside.size === 0) return;
  data.transitions.forEach((transition, number) => {
    const takes = transition.inputs.some(([place]) => inside.has(place));
    const gives = transition.outputs.some(([place]) => inside.has(place));
    if (takes && !gives) transitionNodes[number].classList.add("drains");
  });
}

const namesOf = (places) => places.map((place) => data.places[place].name).join(" ");
const count = (number, word) => number + " " + word + (String(number) === "1" ? "" : "s");
const summaryOf = (siphon) => count(siphon.places.length, "place") + ", " + count(siphon.tokens, "token") +
  (siphon.status ? ", " + siphon.status : "");

// ---- The list of siphons: only the rows in sight are in the document.

const rowHeight = 44;
const list = byId("list");
const rows = byId("rows");
const numbers = data.siphons.map((siphon, number) => number);
const siphonTokens = data.siphons.map((siphon) => BigInt(siphon.tokens));
const compare = (a, b) => (a < b ? -1 : Number(a > b));
let shown = numbers;
let chosen = -1;

const orders = {
  number: (a, b) => a - b,
  size: (a, b) => data.siphons[a].places.length - data.siphons[b].places.length || a - b,
  tokens: (a, b) => compare(siphonTokens[a], siphonTokens[b]) || a - b,
  status: (a, b) => data.siphons[a].status.localeCompare(data.siphons[b].status) || a - b,
};

function renderRows() {
  const first = Math.max(0, Math.floor(list.scrollTop / rowHeight) - 5);
  const last = Math.min(shown.length, first + Math.ceil(list.clientHeight / rowHeight) + 10);
  rows.replaceChildren();
  for (let at = first; at < last; ++at) {
    const number = shown[at];
    const row = document.createElement("div");
    row.className = "row";
    row.id = "row" + number;
    row.setAttribute("role", "option");
    row.setAttribute("aria-selected", String(number === chosen));
    row.setAttribute("aria-posinset", String(at + 1));
    row.setAttribute("aria-setsize", String(shown.length));
    row.style.top = at * rowHeight + "px";
    row.textContent = namesOf(data.siphons[number].places.slice(0, 30));
    const summary = document.createElement("small");
    summary.textContent = "No. " + (number + 1) + ": " + summaryOf(data.siphons[number]);
    row.append(summary);
    row.addEventListener("click", () => choose(number));
    rows.append(row);
  }
}

function choose(number) {
  chosen = number;
  const siphon = data.siphons[number];
  showPlaces(siphon ? siphon.places : []);
  byId("detail").textContent = siphon
    ? "No. " + (number + 1) + " (" + summaryOf(siphon) + "): " + namesOf(siphon.places) : "";
  const at = shown.indexOf(number);
  if (at >= 0) {
    if (at * rowHeight < list.scrollTop) list.scrollTop = at * rowHeight;
    const bottom = (at + 1) * rowHeight - list.clientHeight;
    if (bottom > list.scrollTop) list.scrollTop = bottom;
  }
  renderRows();
  if (at >= 0) list.setAttribute("aria-activedescendant", "row" + number);
  else list.removeAttribute("aria-activedescendant");
}

function filter() {
  const words = byId("search").value.toLowerCase().split(/\s+/).filter((word) => word !== "");
  const matches = words.map((word) => new Set(data.places.flatMap((place, number) =>
    place.name.toLowerCase().includes(word) ? [number] : [])));
  const status = byId("status").value;
  shown = numbers.filter((number) => {
    const siphon = data.siphons[number];
    return (status === "" || siphon.status === status) &&
      matches.every((set) => siphon.places.some((place) => set.has(place)));
  });
  shown.sort(orders[byId("order").value]);
  byId("count").textContent = shown.length === numbers.length
    ? count(numbers.length, "minimal siphon") + data.more
    : shown.length + " of " + count(numbers.length, "minimal siphon") + data.more;
  rows.style.height = shown.length * rowHeight + "px";
  renderRows();
  clearClass("found");
  for (const word of words) {
    const find = (entries, nodes) => entries.forEach((entry, number) => {
      if (entry.name.toLowerCase().includes(word)) nodes[number].classList.add("found");
    });
    find(data.places, placeNodes);
    find(data.transitions, transitionNodes);
  }
}

list.addEventListener("scroll", renderRows);
list.addEventListener("keydown", (event) => {
  const page = Math.max(1, Math.floor(list.clientHeight / rowHeight) - 1);
  const at = shown.indexOf(chosen);
  const moves = {ArrowDown: at + 1, ArrowUp: at - 1, PageDown: at + page, PageUp: at - page, Home: 0,
    End: shown.length - 1};
  if (event.key === "Escape") choose(-1);
  if (!(event.key in moves) || shown.length === 0) return;
  event.preventDefault();
  choose(shown[Math.min(shown.length - 1, Math.max(0, moves[event.key]))]);
});
byId("search").addEventListener("input", filter);
byId("order").addEventListener("change", filter);
byId("status").addEventListener("change", filter);
for (const status of [...new Set(data.siphons.map((siphon) => siphon.status))].sort()) {
  if (status === "") continue;
  const option = document.createElement("option");
  option.textContent = status;
  option.value = status;
  byId("status").append(option);
}
new ResizeObserver(renderRows).observe(list);

// ---- The firing sequence

const markings = [data.places.map((place) => BigInt(place.tokens))];
for (const number of data.sequence) {
  const marking = markings[markings.length - 1].slice();
  data.transitions[number].inputs.forEach(([place, weight]) => { marking[place] -= BigInt(weight); });
  data.transitions[number].outputs.forEach(([place, weight]) => { marking[place] += BigInt(weight); });
  markings.push(marking);
}
let step = 0;
let timer = 0;

const centreOf = (node) => {
  const shape = node.querySelector(".shape");
  const value = (name) => Number(shape.getAttribute(name));
  return shape.tagName === "circle" ? [value("cx"), value("cy")]
    : [value("x") + value("width") / 2, value("y") + value("height") / 2];
};
const make = (tag, attributes) => {
  const node = document.createElementNS(svgNamespace, tag);
  for (const [name, value] of Object.entries(attributes)) node.setAttribute(name, String(value));
  return node;
};

// The same dots as in the picture: up to five, beyond that a number.
function showTokens(place, tokens) {
  const node = placeNodes[place];
  const [x, y] = centreOf(node);
  const spots = [[0, 0], [-6, -6], [6, 6], [6, -6], [-6, 6]];
  const group = node.querySelector(".tokens");
  group.replaceChildren();
  node.classList.toggle("marked", tokens > 0n);
  node.querySelector("title").textContent = data.places[place].name + ": " + count(tokens, "token");
  if (tokens > 5n) {
    const text = make("text", {x, y: y + 4});
    text.textContent = String(tokens);
    group.append(text);
    return;
  }
  const dots = Number(tokens);
  const first = dots % 2 === 0 ? 1 : 0;
  for (let i = first; i < first + dots; ++i) {
    group.append(make("circle", {cx: x + spots[i][0], cy: y + spots[i][1], r: 2.8}));
  }
}

function showStep(to) {
  step = Math.min(data.sequence.length, Math.max(0, to));
  clearClass("fires");
  markings[step].forEach((tokens, place) => showTokens(place, tokens));
  const last = step > 0 ? data.transitions[data.sequence[step - 1]].name : "";
  if (step > 0) transitionNodes[data.sequence[step - 1]].classList.add("fires");
  byId("step").textContent = "Step " + step + " of " + data.sequence.length +
    (step === 0 ? ": initial marking" : ": " + last + " fires") +
    (step === data.sequence.length ? "; now no transition can fire" : "");
  byId("first").disabled = byId("back").disabled = step === 0;
  byId("next").disabled = byId("last").disabled = step === data.sequence.length;
}

// Tokens move from the input places to the transition, then on to the output places.
function animate(number, done) {
  const transition = data.transitions[number];
  const middle = centreOf(transitionNodes[number]);
  const lasting = 350;
  const moving = (arcs, from) => arcs.map(([place]) => {
    const dot = make("circle", {class: "moving", r: 4});
    svg.append(dot);
    const end = centreOf(placeNodes[place]);
    return {dot, from: from ? end : middle, to: from ? middle : end};
  });
  let phase = moving(transition.inputs, true);
  let outputs = false;
  let start = performance.now();
  const frame = (now) => {
    const part = Math.min(1, (now - start) / lasting);
    for (const {dot, from, to} of phase) {
      dot.setAttribute("cx", String(from[0] + (to[0] - from[0]) * part));
      dot.setAttribute("cy", String(from[1] + (to[1] - from[1]) * part));
    }
    if (part < 1) return requestAnimationFrame(frame);
    phase.forEach(({dot}) => dot.remove());
    if (outputs) return done();
    outputs = true;
    phase = moving(transition.outputs, false);
    start = now;
    requestAnimationFrame(frame);
  };
  requestAnimationFrame(frame);
}

const still = window.matchMedia("(prefers-reduced-motion: reduce)");
let playing = false;
function stop() {
  playing = false;
  clearTimeout(timer);
  byId("play").textContent = "Play";
}
function playOn() {
  if (!playing) return;
  if (step === data.sequence.length) return stop();
  const run = step;
  const advance = () => {
    if (!playing || step !== run) return;
    showStep(step + 1);
    timer = setTimeout(playOn, still.matches ? 700 : 150);
  };
  if (still.matches) advance();
  else animate(data.sequence[step], advance);
}
const go = (to) => { stop(); showStep(to); };
byId("first").addEventListener("click", () => go(0));
byId("back").addEventListener("click", () => go(step - 1));
byId("next").addEventListener("click", () => go(step + 1));
byId("last").addEventListener("click", () => go(data.sequence.length));
byId("play").addEventListener("click", () => {
  if (playing) return stop();
  if (step === data.sequence.length) showStep(0);
  playing = true;
  byId("play").textContent = "Pause";
  playOn();
});
if (data.sequence.length > 0) {
  byId("player").hidden = false;
  showStep(0);
}

// ---- The picture: zoom and move

const whole = svg.viewBox.baseVal;
const home = [whole.x, whole.y, whole.width, whole.height];
let view = home.slice();
svg.removeAttribute("width");
svg.removeAttribute("height");
const setView = (next) => {
  view = next;
  svg.setAttribute("viewBox", view.join(" "));
};
const zoom = (factor) => setView([view[0] + view[2] * (1 - factor) / 2, view[1] + view[3] * (1 - factor) / 2,
  view[2] * factor, view[3] * factor]);
const move = (x, y) => setView([view[0] + x, view[1] + y, view[2], view[3]]);
byId("closer").addEventListener("click", () => zoom(0.8));
byId("farther").addEventListener("click", () => zoom(1.25));
byId("fit").addEventListener("click", () => setView(home.slice()));
const picture = byId("picture");
picture.addEventListener("keydown", (event) => {
  const way = view[2] / 10;
  const actions = {"+": () => zoom(0.8), "-": () => zoom(1.25), "0": () => setView(home.slice()),
    ArrowLeft: () => move(-way, 0), ArrowRight: () => move(way, 0), ArrowUp: () => move(0, -way),
    ArrowDown: () => move(0, way)};
  if (event.target !== picture || !(event.key in actions)) return;
  event.preventDefault();
  actions[event.key]();
});
picture.addEventListener("wheel", (event) => {
  event.preventDefault();
  zoom(event.deltaY < 0 ? 0.9 : 1.1);
}, {passive: false});
let grip = null;
svg.addEventListener("pointerdown", (event) => {
  if (event.target.closest("text") === null) grip = [event.clientX, event.clientY];
});
window.addEventListener("pointerup", () => { grip = null; });
svg.addEventListener("pointermove", (event) => {
  if (grip === null) return;
  const scale = Math.max(view[2] / svg.clientWidth, view[3] / svg.clientHeight);
  move((grip[0] - event.clientX) * scale, (grip[1] - event.clientY) * scale);
  grip = [event.clientX, event.clientY];
});

filter();
if (data.chosen >= 0) choose(data.chosen);
else if (data.shown.length > 0) showPlaces(data.shown);
})();
