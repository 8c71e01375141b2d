// Runs beside the page in the design view: follows the source, marks boxes, reports clicks. The page
// itself cannot see it.
(() => {
  'use strict';
  if (window.kvo) return;

  let text = '';
  let marked = -1;
  let bridge = null;
  let shown = -1;

  const sheet = new CSSStyleSheet();
  sheet.replaceSync(
      'svg[data-kvo]{cursor:pointer}' +
      'svg[data-kvo].kvo-marked{outline:2px solid Highlight;outline-offset:1px}');
  document.adoptedStyleSheets = [sheet];

  // Makes `old` equal to `fresh` and leaves alone what is equal already.
  function morph(old, fresh) {
    if (old.nodeType !== fresh.nodeType || old.nodeName !== fresh.nodeName) {
      old.replaceWith(document.importNode(fresh, true));
      return;
    }
    if (old.nodeType !== Node.ELEMENT_NODE) {
      if (old.data !== fresh.data) old.data = fresh.data;
      return;
    }
    for (const {name} of [...old.attributes])
      if (!fresh.hasAttribute(name)) old.removeAttribute(name);
    for (const {name, value} of fresh.attributes)
      if (old.getAttribute(name) !== value) old.setAttribute(name, value);
    const olds = [...old.childNodes];
    const freshes = [...fresh.childNodes];
    let begin = 0;
    while (begin < olds.length && begin < freshes.length &&
           olds[begin].isEqualNode(freshes[begin]))
      ++begin;
    let oldEnd = olds.length;
    let freshEnd = freshes.length;
    while (oldEnd > begin && freshEnd > begin &&
           olds[oldEnd - 1].isEqualNode(freshes[freshEnd - 1])) {
      --oldEnd;
      --freshEnd;
    }
    const behind = oldEnd < olds.length ? olds[oldEnd] : null;
    for (; begin < oldEnd && begin < freshEnd; ++begin) morph(olds[begin], freshes[begin]);
    for (let at = begin; at < oldEnd; ++at) olds[at].remove();
    for (let at = begin; at < freshEnd; ++at)
      old.insertBefore(document.importNode(freshes[at], true), behind);
  }

  function show() {
    unmark();
    const fresh = new DOMParser().parseFromString(text, 'text/html');
    morph(document.documentElement, fresh.documentElement);
    showMark(false);
  }

  function unmark() {
    for (const box of document.querySelectorAll('svg.kvo-marked')) box.removeAttribute('class');
  }

  function showMark(scroll) {
    const box = marked < 0 ? null : document.querySelector('svg[data-kvo="' + marked + '"]');
    if (!box) return;
    box.setAttribute('class', 'kvo-marked');
    if (scroll) box.scrollIntoView({block: 'nearest', inline: 'nearest'});
  }

  // Tells which revision of the page shows.
  function report(revision) {
    shown = revision;
    if (bridge) bridge.Shown(revision);
  }

  window.kvo = {
    // `loaded`: the document is this text already.
    begin(loaded, revision, all) {
      text = all;
      if (!loaded) show();
      report(revision);
    },
    splice(at, removed, revision, added) {
      text = text.slice(0, at) + added + text.slice(at + removed);
      if (removed || added) show();
      report(revision);
    },
    mark(index) {
      unmark();
      marked = index;
      showMark(true);
    },
  };

  new QWebChannel(qt.webChannelTransport, channel => {
    bridge = channel.objects.kvo;
    bridge.Shown(shown);
  });

  function boxOf(event) {
    const box = event.target.closest && event.target.closest('svg[data-kvo]');
    return box ? Number(box.getAttribute('data-kvo')) : -1;
  }
  function listen(kind, react) {
    document.addEventListener(kind, event => {
      event.preventDefault();
      event.stopPropagation();
      const index = boxOf(event);
      if (index >= 0 && bridge) react(index);
    }, true);
  }
  listen('click', index => bridge.Clicked(index));
  listen('dblclick', index => bridge.DoubleClicked(index));
  listen('submit', () => {});
})();
