// The search of the index, the users of a package, and pictures that can be moved and zoomed.
"use strict";

const MaximumHits = 8; // of a package
const MaximumHitPackages = 100; // whose hits are shown: a letter is found everywhere

function element(name, properties, ...children) {
  const made = Object.assign(document.createElement(name), properties);
  made.append(...children);
  return made;
}

function showUsers() {
  const place = document.getElementById("user-list");
  if (!place) return;
  const users = (typeof ksxUsers === "object" && ksxUsers[document.body.dataset.page]) || [];
  if (users.length === 0) {
    place.append(element("p", {}, "No package of this report uses it."));
    return;
  }
  const list = element("ul", {className: "contents"});
  for (const [page, title] of users)
    list.append(element("li", {}, element("a", {href: page}, title)));
  place.append(list);
}

// Shows a part of a picture: its middle and the pixels of the screen for each of its units.
class PictureView {
  constructor(figure) {
    this.view = figure.querySelector(".view");
    this.svg = figure.querySelector("svg");
    const size = this.svg.viewBox.baseVal;
    this.width = size.width;
    this.height = size.height;
    figure.classList.add("live");
    figure.prepend(this.tools());
    this.view.addEventListener("wheel", event => this.onWheel(event), {passive: false});
    this.view.addEventListener("keydown", event => this.onKey(event));
    this.view.addEventListener("pointerdown", event => this.onPress(event));
    this.view.addEventListener("click", event => this.onClick(event), true);
    this.svg.removeAttribute("width");
    this.svg.removeAttribute("height");
    this.svg.addEventListener("focusin", event => this.reveal(event.target));
    this.isWhole = true;
    new ResizeObserver(() => this.resize()).observe(figure);
    this.resize();
  }

  tools() {
    const button = (text, label, action) => {
      const made = element("button", {type: "button", title: label}, text);
      made.setAttribute("aria-label", label);
      made.addEventListener("click", action);
      return made;
    };
    const bar = element("div", {className: "tools"},
      button("+", "Zoom in", () => this.zoom(1.25)),
      button("\u2212", "Zoom out", () => this.zoom(0.8)),
      button("Whole", "Show the whole picture", () => this.showWhole()),
      button("1:1", "Show the picture in its own size", () => this.showOwnSize()),
      element("span", {className: "note"},
        "Drag or use the arrow keys to move; + and \u2212, or the wheel with Ctrl, to zoom."));
    bar.setAttribute("role", "toolbar");
    bar.setAttribute("aria-label", "Picture");
    return bar;
  }

  resize() {
    const width = this.view.clientWidth;
    const natural = this.height * Math.min(1, width / this.width);
    this.view.style.height =
      Math.round(Math.max(160, Math.min(natural, 0.75 * innerHeight))) + "px";
    if (this.isWhole) this.showWhole();
    else this.apply();
  }

  wholeScale() {
    return Math.min(this.view.clientWidth / this.width, this.view.clientHeight / this.height, 1);
  }

  showWhole() {
    this.scale = this.wholeScale();
    this.x = this.width / 2;
    this.y = this.height / 2;
    this.apply();
    this.isWhole = true;
  }

  showOwnSize() { this.zoom(1 / this.scale); }

  // The point stays where it is. Without one, the middle does.
  zoom(factor, x = this.x, y = this.y) {
    const scale = Math.min(8, Math.max(this.wholeScale() / 2, this.scale * factor));
    const share = this.scale / scale;
    this.x = x + (this.x - x) * share;
    this.y = y + (this.y - y) * share;
    this.scale = scale;
    this.apply();
  }

  move(x, y) {
    this.x += x / this.scale;
    this.y += y / this.scale;
    this.apply();
  }

  apply() {
    this.isWhole = false;
    this.x = Math.min(this.width, Math.max(0, this.x));
    this.y = Math.min(this.height, Math.max(0, this.y));
    const width = this.view.clientWidth / this.scale;
    const height = this.view.clientHeight / this.scale;
    this.svg.setAttribute("viewBox",
      [this.x - width / 2, this.y - height / 2, width, height].map(n => n.toFixed(2)).join(" "));
  }

  pointAt(event) {
    const frame = this.view.getBoundingClientRect();
    return [this.x + (event.clientX - frame.left - frame.width / 2) / this.scale,
            this.y + (event.clientY - frame.top - frame.height / 2) / this.scale];
  }

  onWheel(event) {
    if (!event.ctrlKey) return;
    event.preventDefault();
    this.zoom(Math.exp(-event.deltaY / 300), ...this.pointAt(event));
  }

  onKey(event) {
    const step = 60;
    const actions = {
      "+": () => this.zoom(1.25), "=": () => this.zoom(1.25), "-": () => this.zoom(0.8),
      "0": () => this.showWhole(), "1": () => this.showOwnSize(),
      "ArrowLeft": () => this.move(-step, 0), "ArrowRight": () => this.move(step, 0),
      "ArrowUp": () => this.move(0, -step), "ArrowDown": () => this.move(0, step)};
    const action = actions[event.key];
    if (!action || event.ctrlKey || event.altKey || event.metaKey) return;
    event.preventDefault();
    action();
  }

  onPress(event) {
    if (event.button !== 0) return;
    this.hasMoved = false;
    let [x, y] = [event.clientX, event.clientY];
    const begin = [x, y];
    const onMove = next => {
      const far = Math.hypot(next.clientX - begin[0], next.clientY - begin[1]);
      if (!this.hasMoved && far < 4) return;
      this.hasMoved = true;
      this.view.classList.add("moving");
      this.move(x - next.clientX, y - next.clientY);
      [x, y] = [next.clientX, next.clientY];
    };
    const onEnd = () => {
      this.view.classList.remove("moving");
      removeEventListener("pointermove", onMove);
      removeEventListener("pointerup", onEnd);
      removeEventListener("pointercancel", onEnd);
    };
    addEventListener("pointermove", onMove);
    addEventListener("pointerup", onEnd);
    addEventListener("pointercancel", onEnd);
    if (event.target.closest("a")) event.preventDefault(); // no dragging of the address
  }

  // A link is not followed when the picture was moved by it.
  onClick(event) {
    if (this.hasMoved) event.preventDefault();
    this.hasMoved = false;
  }

  // Moves a link that got the focus into sight.
  reveal(target) {
    const frame = this.view.getBoundingClientRect();
    const box = target.getBoundingClientRect();
    if (box.left >= frame.left && box.right <= frame.right && box.top >= frame.top &&
        box.bottom <= frame.bottom) return;
    [this.x, this.y] = this.pointAt({clientX: (box.left + box.right) / 2,
                                     clientY: (box.top + box.bottom) / 2});
    this.apply();
  }
}

// Sorts the rows of a table by a column when its head is pressed, and turns them around when it is
// pressed again.
class Sorting {
  constructor(table) {
    this.body = table.tBodies[0];
    this.order = new Intl.Collator("en", {numeric: true});
    this.heads = [...table.tHead.rows[0].cells];
    this.heads.forEach((head, column) => {
      const button = element("button", {type: "button"}, ...head.childNodes);
      button.addEventListener("click", () => this.sort(column));
      head.append(button);
    });
  }

  sort(column) {
    const head = this.heads[column];
    const sign = head.getAttribute("aria-sort") === "ascending" ? -1 : 1;
    for (const other of this.heads) other.removeAttribute("aria-sort");
    head.setAttribute("aria-sort", sign > 0 ? "ascending" : "descending");
    const rows = [...this.body.rows].map(row => ({row, key: this.keyOf(row.cells[column])}));
    rows.sort((one, other) => sign * this.order.compare(one.key, other.key));
    for (const {row} of rows) this.body.append(row);
  }

  keyOf(cell) {
    const text = cell.textContent.trim();
    return cell.classList.contains("number") ? text.replaceAll(",", "") : text;
  }
}

function searchable(item) {
  return item.filter(text => typeof text === "string").join(" ").toLowerCase();
}

// The packages of the index with the data of the library, which lies in a file of its own.
function packagesOfLibrary() {
  return [...document.querySelectorAll("tr[data-page]")].map((row, number) => {
    const data = ksxLibrary[number];
    return {row, data, text: searchable([data.title, data.file, data.description]),
            objects: data.objects.map(object => ({object, text: searchable(object)}))};
  });
}

// The packages of a table whose rows have all that is searched.
function packagesOfTable(table) {
  return [...table.tBodies[0].rows].map(row =>
    ({row, text: searchable([row.textContent]), objects: []}));
}

class Search {
  constructor(input) {
    this.status = document.getElementById("status");
    const table = document.querySelector("table.searched");
    this.packages = table ? packagesOfTable(table) : packagesOfLibrary();
    this.hasObjects = !table;
    input.form.addEventListener("submit", event => event.preventDefault());
    input.addEventListener("input", () => this.run(input.value));
    this.run(input.value);
  }

  run(query) {
    const words = query.toLowerCase().split(/\s+/).filter(word => word);
    const matches = text => words.every(word => text.includes(word));
    let packages = 0;
    let objects = 0;
    for (const one of this.packages) {
      const hits = words.length === 0 ? [] : one.objects.filter(hit => matches(hit.text));
      const isShown = hits.length > 0 || matches(one.text);
      one.row.hidden = !isShown;
      packages += isShown ? 1 : 0;
      objects += hits.length;
      this.showHits(one, packages <= MaximumHitPackages ? hits : []);
    }
    const count = (number, word) => `${number} ${word}${number === 1 ? "" : "s"}`;
    this.status.textContent = words.length === 0 || !this.hasObjects
      ? count(packages, "package")
      : `${count(packages, "package")}, ${count(objects, "object")} found`;
  }

  showHits(one, hits) {
    const cell = one.row.cells[0];
    cell.querySelector(".hits")?.remove();
    if (hits.length === 0) return;
    const list = element("ul", {className: "hits"});
    for (const {object: [kind, name, label, anchor]} of hits.slice(0, MaximumHits))
      list.append(element("li", {},
        element("a", {href: `packages/${one.data.page}#${anchor}`}, name),
        element("span", {className: "kind"}, label ? `${kind}, ${label}` : kind)));
    if (hits.length > MaximumHits)
      list.append(element("li", {}, `${hits.length - MaximumHits} more`));
    cell.append(list);
  }
}

showUsers();
for (const table of document.querySelectorAll("table")) new Sorting(table);
for (const figure of document.querySelectorAll("figure.picture")) new PictureView(figure);
// The pictures have other heights now than when the browser went to the address.
if (performance.getEntriesByType("navigation")[0]?.type === "navigate")
  document.getElementById(decodeURIComponent(location.hash.slice(1)))?.scrollIntoView();
const searchInput = document.getElementById("search");
if (searchInput) new Search(searchInput);
