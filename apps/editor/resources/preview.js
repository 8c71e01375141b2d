// Runs in the preview, hidden from the mail: follows what the program renders, keeping the scroll
// position, shows it light or dark, marks the place of a control, and reports clicks on places.
// The program writes <!--kvo 3-->...<!--/kvo--> around what the control 3 became.
(() => {
  'use strict';
  if (window.kvo) return;

  let text = '';
  let marked = -1;
  let dark = false;
  let pictures = true;
  let bridge = null;
  let revision = -1;

  // --- light and dark ---
  // The browser cannot be told which colours the reader prefers, so the conditions of the mail's
  // style rules are answered here: each "prefers-color-scheme" becomes one that always or never
  // holds.
  const scheme = new CSSStyleSheet();
  const noPictures = new CSSStyleSheet();
  noPictures.replaceSync('*{background-image:none!important;list-style-image:none!important}');
  document.adoptedStyleSheets = [scheme];
  const kPreference =
      /\(\s*(?:prefers-color-scheme\s*:\s*(dark|light)|min-width\s*:\s*(?:0\.|9999)(11|22)px)\s*\)/gi;

  // Turns all colours around, but not those of pictures.
  function inverted() {
    const kInverse = '{filter:invert(1) hue-rotate(180deg)}';
    // The ground of the body covers the window only as long as the root has none of its own.
    const ground = getComputedStyle(document.body).backgroundColor;
    const seen = ground === 'rgba(0, 0, 0, 0)' ? '#fff' : ground;
    return `:where(:root){background:${seen}}:root${kInverse}` +
        (pictures ? `img,video,svg,object,input[type=image],[background]${kInverse}` : '');
  }

  let hasDark = false;  // the mail itself says what it looks like when dark

  // Returns the text of a media list with its conditions answered. What it was is still in it.
  function answered(media) {
    return media.replace(kPreference, (all, name, code) => {
      const forDark = name ? name.toLowerCase() === 'dark' : code === '11';
      hasDark = hasDark || forDark;
      return `(min-width: ${forDark === dark ? '0.' : '9999'}${forDark ? '11' : '22'}px)`;
    });
  }

  function answer(media) {
    const text = answered(media.mediaText);
    if (media.mediaText !== text) media.mediaText = text;
  }

  function answerRules(rules) {
    for (const rule of rules) {
      if (rule.media) answer(rule.media);
      let inner = null;
      try {
        inner = rule.cssRules || (rule.styleSheet && rule.styleSheet.cssRules);
      } catch (unreadable) {
        continue;
      }
      if (inner) answerRules(inner);
    }
  }

  function showScheme() {
    hasDark = false;
    for (const sheet of document.styleSheets) {
      answer(sheet.media);
      try {
        answerRules(sheet.cssRules);
      } catch (unreadable) {
        // A style sheet of another origin was not loaded either.
      }
    }
    for (const source of document.querySelectorAll('source[media]')) {
      const media = answered(source.media);
      if (source.media !== media) source.media = media;
    }
    if (document.querySelector('meta[name="color-scheme" i][content*=dark i]')) hasDark = true;
    scheme.replaceSync(
        !dark ? ':root{color-scheme:light!important}' :
        hasDark ? ':root{color-scheme:dark!important}' : inverted());
    if (bridge) bridge.Scheme(dark && hasDark);
  }

  // --- following the program ---

  // Makes the children of `old` equal to those of `fresh`, leaving equal ones untouched.
  function follow(old, fresh) {
    const olds = [...old.childNodes].filter(node => node !== layer);
    const freshes = [...fresh.childNodes];
    let begin = 0;
    let oldEnd = olds.length;
    let freshEnd = freshes.length;
    while (begin < oldEnd && begin < freshEnd && olds[begin].isEqualNode(freshes[begin])) ++begin;
    while (oldEnd > begin && freshEnd > begin &&
           olds[oldEnd - 1].isEqualNode(freshes[freshEnd - 1])) {
      --oldEnd;
      --freshEnd;
    }
    const behind = oldEnd < olds.length ? olds[oldEnd] : null;
    const pairs = Math.min(oldEnd, freshEnd);
    for (let at = begin; at < pairs; ++at) replace(olds[at], freshes[at]);
    for (let at = pairs; at < oldEnd; ++at) olds[at].remove();
    for (let at = pairs; at < freshEnd; ++at)
      old.insertBefore(document.importNode(freshes[at], true), behind);
  }

  function replace(old, fresh) {
    if (old.nodeType !== fresh.nodeType || old.nodeName !== fresh.nodeName) {
      old.replaceWith(document.importNode(fresh, true));
    } else if (old.nodeType !== Node.ELEMENT_NODE) {
      if (old.data !== fresh.data) old.data = fresh.data;
    } else {
      for (const {name} of [...old.attributes])
        if (!fresh.hasAttribute(name)) old.removeAttribute(name);
      for (const {name, value} of fresh.attributes)
        if (old.getAttribute(name) !== value) old.setAttribute(name, value);
      follow(old, fresh);
    }
  }

  function show() {
    const fresh = new DOMParser().parseFromString(text, 'text/html');
    if (!pictures)
      for (const picture of fresh.querySelectorAll('img,picture>source,input[type=image],image'))
        for (const name of ['src', 'srcset', 'href', 'xlink:href']) picture.removeAttribute(name);
    replace(document.documentElement, fresh.documentElement);
    shown();
  }

  function shown() {
    showScheme();
    drawMark();
    if (bridge) bridge.Shown(revision);
  }

  // --- places of controls ---

  const kBegin = /^kvo (\d+)$/;

  function comments() {
    return document.createTreeWalker(document.documentElement, NodeFilter.SHOW_COMMENT);
  }

  // Returns the number of the innermost control around a node; -1 for none.
  function controlAround(node) {
    const walker = comments();
    walker.currentNode = node;
    let inside = 0;
    while (walker.previousNode()) {
      const name = walker.currentNode.data;
      if (name === '/kvo') {
        ++inside;
      } else if (kBegin.test(name)) {
        if (inside === 0) return Number(name.match(kBegin)[1]);
        --inside;
      }
    }
    return -1;
  }

  // Returns what a control became; null when it became nothing.
  function rangeOf(control) {
    const walker = comments();
    let depth = -1;
    const range = document.createRange();
    while (walker.nextNode()) {
      const node = walker.currentNode;
      if (depth < 0) {
        if (node.data !== 'kvo ' + control) continue;
        range.setStartAfter(node);
        depth = 0;
      } else if (kBegin.test(node.data)) {
        ++depth;
      } else if (node.data === '/kvo' && depth-- === 0) {
        range.setEndBefore(node);
        return range;
      }
    }
    return null;
  }

  // The mark lies over the mail, in a part of the document that its styles do not reach.
  const layer = document.createElement('kvo-marks');
  const ground = layer.attachShadow({mode: 'closed'});

  function drawMark() {
    ground.replaceChildren();
    layer.remove();
    const range = marked < 0 ? null : rangeOf(marked);
    if (!range) return;
    document.documentElement.append(layer);
    layer.style.cssText = 'position:absolute;left:0;top:0;width:0;height:0;display:block';
    const origin = layer.getBoundingClientRect();
    for (const box of boxesOf(range)) {
      const frame = document.createElement('div');
      frame.style.cssText =
          'position:absolute;pointer-events:none;z-index:2147483647;box-sizing:border-box;' +
          'border:2px solid #1b68b3;outline:1px solid #fff;border-radius:2px;' +
          `left:${box.left - origin.left - 3}px;top:${box.top - origin.top - 3}px;` +
          `width:${box.width + 6}px;height:${box.height + 6}px`;
      ground.append(frame);
    }
  }

  // Leaves out rectangles inside others, such as a cell's in its row's.
  function boxesOf(range) {
    const boxes = [...range.getClientRects()].filter(box => box.width > 0 && box.height > 0);
    boxes.sort((one, other) => other.width * other.height - one.width * one.height);
    const kept = [];
    const kMost = 50;
    for (const box of boxes) {
      if (kept.length >= kMost) break;
      if (!kept.some(around => around.left <= box.left + 1 && around.right >= box.right - 1 &&
                               around.top <= box.top + 1 && around.bottom >= box.bottom - 1))
        kept.push(box);
    }
    return kept;
  }

  function scrollToMark() {
    const range = rangeOf(marked);
    const box = range && boxesOf(range)[0];
    const kEdge = 20;
    if (!box || (box.bottom > kEdge && box.top < innerHeight - kEdge)) return;
    scrollBy(0, box.top - Math.max(20, (innerHeight - box.height) / 2));
  }

  // Returns the node that is drawn at a point.
  function nodeAt(event) {
    const caret = document.caretRangeFromPoint(event.clientX, event.clientY);
    const node = caret && caret.startContainer;
    if (!node || node.nodeType !== Node.TEXT_NODE || !event.target.contains(node))
      return event.target;
    const range = document.createRange();
    range.selectNodeContents(node);
    const hit = [...range.getClientRects()].some(
        box => event.clientX >= box.left && event.clientX <= box.right &&
               event.clientY >= box.top && event.clientY <= box.bottom);
    return hit ? node : event.target;
  }

  document.addEventListener('click', event => {
    event.preventDefault();
    if (!bridge || !(event.target instanceof Node)) return;
    const control = controlAround(nodeAt(event));
    if (control >= 0) bridge.Clicked(control);
  }, true);
  for (const kind of ['submit', 'dragstart', 'auxclick'])
    document.addEventListener(kind, event => event.preventDefault(), true);
  // What is loaded later moves places and has rules of its own.
  document.addEventListener('load', event => {
    if (event.target.localName === 'link') showScheme();
    drawMark();
  }, true);
  addEventListener('resize', drawMark);

  // --- what the program calls ---

  window.kvo = {
    // `loaded` says whether the document was loaded from this text.
    begin(loaded, all, number) {
      text = all;
      revision = number;
      if (loaded && pictures)
        shown();
      else
        show();
    },
    splice(at, removed, added, number) {
      text = text.slice(0, at) + added + text.slice(at + removed);
      revision = number;
      show();
    },
    mark(control, scrolls) {
      marked = control;
      drawMark();
      if (scrolls && marked >= 0) scrollToMark();
    },
    dark(on) {
      dark = on;
      showScheme();
    },
    pictures(on) {
      const changed = pictures !== on;
      pictures = on;
      document.adoptedStyleSheets = on ? [scheme] : [scheme, noPictures];
      if (changed && revision >= 0) show();
    },
    // Reports where the mail is scrolled to from here on.
    scroll(x, y) {
      scrollTo(x, y);
      addEventListener('scroll', () => bridge && bridge.Scrolled(scrollX, scrollY));
    },
    text: () => text,
  };

  new QWebChannel(qt.webChannelTransport, channel => {
    bridge = channel.objects.kvo;
    if (revision >= 0) shown();
  });
})();
