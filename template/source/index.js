
const KINDS = {
  pictures: ['jpg', 'jpeg', 'jpe', 'png', 'gif', 'webp', 'avif', 'bmp', 'heic', 'heif', 'tif', 'tiff'],
  videos: ['mov', 'mp4', 'm4v', '3gp', '3gpp', 'avi', 'mpg', 'mpeg', 'webm', 'mkv', 'wmv', 'flv'],
};
/// Files with a link. A browser that has no type for an extension judges by the content, and may run a file as a page
/// whatever its name; these are types that every browser has built in. All other files have a name but no link.
const LINKED = [
  'jpg', 'jpeg', 'png', 'gif', 'webp', 'bmp', 'avif', 'mp4', 'm4v', 'mov', 'webm', '3gp', 'mp3', 'm4a', 'wav', 'ogg',
  'pdf', 'txt',
];
const TILE = 150;  // least width of a thumbnail in pixels
const ROWS = 8;    // rows of thumbnails in a stretch

/// The extension in lower case; empty for a name that has none or is nothing else.
function extensionOf(name) {
  const dot = name.lastIndexOf('.');
  return dot > 0 ? name.slice(dot + 1).toLowerCase() : '';
}

/// The files as { name, address, link, folder, at }, by kind. The address is always relative to this page: each segment
/// is encoded. It is the link too, which is empty for a file that must not be opened.
function readFiles(folders) {
  const files = { pictures: [], videos: [], others: [] };
  const kinds = new Map(['pictures', 'videos'].flatMap((kind) => KINDS[kind].map((extension) => [extension, kind])));
  for (const { path, files: names } of folders) {
    const folder = path.join(' / ');
    const start = './' + path.map(encodeURIComponent).join('/') + '/';
    for (const name of names) {
      const extension = extensionOf(name);
      const list = files[kinds.get(extension) || 'others'];
      const address = start + encodeURIComponent(name);
      list.push({ name, address, link: LINKED.includes(extension) ? address : '', folder, at: list.length });
    }
  }
  return files;
}

/// A length in seconds as "1:02:03" or "2:03".
function clock(seconds) {
  if (!Number.isFinite(seconds)) return '';
  const parts = [Math.floor(seconds / 3600), Math.floor(seconds / 60) % 60, Math.floor(seconds % 60)];
  if (!parts[0]) parts.shift();
  return parts.map((part, at) => (at ? String(part).padStart(2, '0') : part)).join(':');
}

function makeLink(className, href, ...content) {
  const link = make('a', className, ...content);
  link.href = href;
  return link;
}

/// Loads the lengths and first frames of the videos that are in view, and no others.
const videosInView = new IntersectionObserver((entries) => {
  for (const { target, isIntersecting } of entries) {
    if (isIntersecting && !target.hasAttribute('src')) {
      target.src = target.file.address;
    } else if (!isIntersecting && target.hasAttribute('src')) {
      target.removeAttribute('src');
      target.load();
    }
  }
});

/// A thumbnail, which opens the viewer. As a link it can be opened in a tab of its own, too.
function makeTile(file, ...content) {
  if (file.link) return makeLink('tile', file.link, ...content);
  const tile = make('button', 'tile', ...content);
  tile.type = 'button';
  return tile;
}

function pictureTile(file) {
  const image = make('img', '');
  image.alt = file.name;
  image.loading = 'lazy';
  image.decoding = 'async';
  const name = makeText('span', 'name', '');
  const tile = makeTile(file, image, name);
  image.addEventListener('error', () => {
    tile.classList.add('lost');
    name.textContent = file.name;
  });
  image.src = file.address;
  return tile;
}

function videoTile(file) {
  const video = make('video', '');
  video.file = file;
  video.preload = 'metadata';
  video.muted = true;
  video.setAttribute('aria-hidden', 'true');
  const length = make('span', 'length');
  const tile = makeTile(file, video, makeText('span', 'name', file.name), length);
  video.addEventListener('loadedmetadata', () => { length.textContent = clock(video.duration); });
  video.addEventListener('error', () => { if (video.hasAttribute('src')) tile.classList.add('lost'); });
  videosInView.observe(video);
  return tile;
}

/// A picture or a video in full size, with its neighbours a key away.
class Viewer {
  constructor() {
    this.name = makeText('bdi', '', '');
    this.place = make('span', 'count');
    this.link = makeLink('', '#', 'Open the file');
    this.view = make('div', 'view');
    this.dialog = make('dialog', '',
      make('div', 'head', this.name, this.place, makeButton('', 'Close', () => this.dialog.close())), this.view,
      make('div', 'foot', makeButton('', 'Previous', () => this.step(-1)), this.link, makeButton('', 'Next', () => this.step(1))));
    this.dialog.addEventListener('keydown', (event) => {
      const step = { ArrowLeft: -1, ArrowRight: 1 }[event.key];
      if (!step || event.target.tagName === 'VIDEO') return;
      event.preventDefault();
      this.step(step);
    });
    this.dialog.addEventListener('close', () => {
      this.view.replaceChildren();
      this.gallery.focus(this.at);
    });
    document.body.append(this.dialog);
  }

  open(gallery, at) {
    this.gallery = gallery;
    this.show(at);
    this.dialog.showModal();
  }

  step(by) {
    const at = this.at + by;
    if (at >= 0 && at < this.gallery.shown.length) this.show(at);
  }

  show(at) {
    this.at = at;
    const file = this.gallery.shown[at];
    this.name.textContent = file.name;
    this.dialog.setAttribute('aria-label', file.name);
    this.place.textContent = (at + 1) + ' of ' + this.gallery.shown.length;
    this.linkTo(file);
    const element = this.gallery.videos ? make('video', '') : make('img', '');
    if (this.gallery.videos) element.controls = true;
    else element.alt = file.name;
    element.addEventListener('error', () => {
      if (!element.isConnected) return;
      this.view.replaceChildren(make('p', '', "This browser can't show the file. It is in the folder ", makeText('bdi', '', file.folder), '.'));
    });
    element.src = file.address;
    this.view.replaceChildren(element);
  }

  linkTo(file) {
    if (!file.link && document.activeElement === this.link) this.link.nextSibling.focus();  // keys are read in the dialog
    this.link.hidden = !file.link;
    if (file.link) this.link.href = file.link;
    else this.link.removeAttribute('href');
  }
}

/// The files of one kind, with a choice of the folder. `draw` fills the area below with the files to show.
class FileSection {
  constructor(id, title, files) {
    Object.assign(this, { id, title, files, shown: files });
    this.count = make('output', 'count');
    const head = make('h2', '', title);
    head.id = id + '-head';
    const bar = make('div', 'bar', head, this.count);
    const folders = new Map();
    for (const file of files) folders.set(file.folder, (folders.get(file.folder) || 0) + 1);
    if (folders.size > 1) bar.append(this.choiceOf(folders));
    this.area = make('div', '');
    this.section = make('section', 'media', bar, this.area);
    this.section.id = id;
    this.section.setAttribute('aria-labelledby', head.id);
    this.showCount();
  }

  choiceOf(folders) {
    const choice = make('select', '', new Option('All folders', ''));
    for (const [folder, count] of folders) choice.append(new Option(`${folder} (${count.toLocaleString('en')})`, folder));
    choice.setAttribute('aria-label', 'Folder of ' + this.title.toLowerCase());
    choice.addEventListener('change', () => {
      this.shown = choice.selectedIndex ? this.files.filter((file) => file.folder === choice.value) : this.files;
      this.showCount();
      this.draw();
    });
    return choice;
  }

  showCount() {
    const total = this.files.length.toLocaleString('en');
    this.count.textContent = this.shown === this.files ? total : this.shown.length.toLocaleString('en') + ' of ' + total;
  }
}

/// Thumbnails in rows, of which only those near the viewport exist.
class Gallery extends FileSection {
  constructor(id, title, files, viewer) {
    super(id, title, files);
    this.videos = id === 'videos';
    this.area.className = 'grid';
    this.viewer = viewer;
    this.list = new LongList({
      parent: this.area, tag: 'div', size: ROWS, height: TILE,
      fill: (stretch, first, end) => this.fill(stretch, first * this.columns, end * this.columns),
    });
    this.area.addEventListener('click', (event) => this.clicked(event));
    this.area.addEventListener('keydown', (event) => this.pressed(event));
    new ResizeObserver(() => this.measure()).observe(this.section);
  }

  /// Starts over when another number of columns fits.
  measure() {
    const width = this.section.clientWidth;
    const columns = Math.max(3, Math.floor(width / TILE));
    if (!width || this.columns === columns && Math.abs(width - this.width) < 20) return;
    this.columns = columns;
    this.width = width;
    this.draw();
  }

  draw() {
    if (!this.columns) return;
    this.area.style.setProperty('--columns', this.columns);
    const gap = parseFloat(getComputedStyle(this.area).getPropertyValue('--gap')) * 16;
    this.list.height = (this.width + gap) / this.columns;
    this.list.show(Math.ceil(this.shown.length / this.columns));
  }

  /// One tile of a stretch is in the tab order; the arrow keys lead to the others.
  fill(stretch, first, end) {
    this.shown.slice(first, end).forEach((file, at) => {
      const tile = this.videos ? videoTile(file) : pictureTile(file);
      tile.title = file.name;
      tile.at = first + at;
      tile.tabIndex = at ? -1 : 0;
      stretch.append(tile);
    });
  }

  clicked(event) {
    const tile = event.target.closest('.tile');
    if (!tile || tile.href && (event.ctrlKey || event.metaKey || event.shiftKey || event.altKey)) return;
    event.preventDefault();
    this.viewer.open(this, tile.at);
  }

  pressed(event) {
    const step = { ArrowLeft: -1, ArrowRight: 1, ArrowUp: -this.columns, ArrowDown: this.columns }[event.key];
    const tile = event.target.closest('.tile');
    if (!step || !tile) return;
    event.preventDefault();
    this.focus(tile.at + step);
  }

  focus(at) {
    if (at < 0 || at >= this.shown.length) return;
    const stretch = this.list.stretchOf(Math.floor(at / this.columns));
    stretch.children[at % (ROWS * this.columns)].focus();
  }
}

/// Names in a list, some of them links.
class FileList extends FileSection {
  constructor(id, title, files) {
    super(id, title, files);
    this.list = new LongList({
      parent: this.area, tag: 'div', size: 40, height: 34, fill: (stretch, first, end) => this.fill(stretch, first, end),
    });
  }

  draw() {
    this.list.show(this.shown.length);
  }

  fill(stretch, first, end) {
    for (const file of this.shown.slice(first, end)) {
      const name = makeText('bdi', '', file.name);
      stretch.append(make('div', 'file', file.link ? makeLink('', file.link, name) : name, makeText('span', '', file.folder)));
    }
  }
}

/// Adds the search to the conversations that the page comes with.
function completeConversations(section) {
  const list = section.querySelector('.conversations');
  const items = Array.from(list.children, (element) => ({
    element, text: folded(Array.from(element.querySelectorAll('bdi'), (part) => part.textContent).join('\n')),
  }));
  const box = make('input', '');
  box.type = 'search';
  box.placeholder = 'Name or number';
  box.setAttribute('aria-label', 'Search conversations by name or number');
  const count = make('output', 'count');
  const bar = make('div', 'bar', section.querySelector('h2'), count, box);
  const total = items.length.toLocaleString('en');
  const more = make('p', 'more', makeButton('', `Show all ${total} conversations`, () => {
    list.classList.remove('few');
    more.hidden = true;
    items[12].element.querySelector('a').focus();
  }));
  const few = items.length > 12;
  let all = !few;
  more.hidden = !few;
  list.classList.toggle('few', few);
  more.addEventListener('click', () => { all = true; });
  box.addEventListener('input', () => {
    const words = folded(box.value).split(/\s+/).filter((word) => word);
    let hits = 0;
    for (const { element, text } of items) {
      element.hidden = !words.every((word) => text.includes(word));
      if (!element.hidden) ++hits;
    }
    list.classList.toggle('few', !words.length && !all);
    more.hidden = all || words.length > 0;
    count.textContent = words.length ? `${hits.toLocaleString('en')} of ${total}` : total;
  });
  count.textContent = total;
  section.prepend(bar);
  section.append(more);
}

function jumpsOf(sections) {
  const links = sections.map(([id, title, count]) => makeLink('', '#' + id, title, ' ', make('span', '', count.toLocaleString('en'))));
  const jumps = make('nav', 'jumps', ...links);
  jumps.setAttribute('aria-label', 'On this page');
  return jumps;
}

document.addEventListener('DOMContentLoaded', () => {
  const files = readFiles(JSON.parse(document.getElementById('data').textContent).folders);
  const main = document.querySelector('main');
  const conversations = document.getElementById('conversations');
  const count = conversations.querySelectorAll('li').length;
  const sections = count ? [['conversations', 'Conversations', count]] : [];
  if (count) completeConversations(conversations);
  const viewer = new Viewer();
  for (const [id, title, list] of [['pictures', 'Pictures', files.pictures], ['videos', 'Videos', files.videos],
                                   ['others', 'Other files', files.others]]) {
    if (!list.length) continue;
    sections.push([id, title, list.length]);
    const section = id === 'others' ? new FileList(id, title, list) : new Gallery(id, title, list, viewer);
    main.append(section.section);
    if (id === 'others') section.draw();
    else section.measure();
  }
  if (sections.length > 1) main.before(jumpsOf(sections));
});
