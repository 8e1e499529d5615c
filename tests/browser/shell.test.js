// The shell page (www/index.html): every menu route opens its page of cambioIP.cgi, from the
// menu and from a link straight to the route, with nothing broken on the way; the back and
// forward buttons move between routes.
'use strict';

const { describe, test, before, after } = require('node:test');
const assert = require('node:assert/strict');
const { arrancaServidor } = require('./servidor.js');
const { abreNavegador, vigilaPagina, conCaptura } = require('./navegador.js');

// The menu: route, the CGI command that paints it.
const RUTAS = [
  { ruta: 'quick', comando: 1 },
  { ruta: 'detailed', comando: 2 },
  { ruta: 'units', comando: 15 },
  { ruta: 'units-test', comando: 16 },
  { ruta: 'network', comando: 3 },
  { ruta: 'inputs', comando: 10 },
  { ruta: 'transport', comando: 12 },
  { ruta: 'output', comando: 13 },
  { ruta: 'ip', comando: 17 },
  { ruta: 'test', comando: 14 },
];

// Generous: a page may come slowly from a loaded machine; nothing here measures speed.
const ESPERA_MS = 15000;

let servidor;
let navegador;
// command -> the CGI's own table, read once: { filas, cabecera }.
const tablasCGI = new Map();

before(async () => {
  servidor = await arrancaServidor({ cgi: process.env.CAMBIOIP_CGI, rack: 'qam' });
  navegador = await abreNavegador();
});

after(async () => {
  await navegador?.close();
  await servidor?.para();
});

// Runs `cuerpo(pagina)` on a new page of a fresh browser context. At the end the page must
// have shown no console error and no failed request; any failure leaves a screenshot.
async function enPagina(nombre, cuerpo) {
  const contexto = await navegador.newContext();
  const pagina = await contexto.newPage();
  pagina.setDefaultTimeout(ESPERA_MS);
  const problemas = vigilaPagina(pagina);
  try {
    await conCaptura(pagina, nombre, async () => {
      await cuerpo(pagina);
      await compruebaRecursos(pagina);
      assert.deepEqual(problemas, [], 'the page showed errors or failed requests');
    });
  } finally {
    await contexto.close();
  }
}

// Does `accion` and waits for the page's request of the CGI's command; it must answer 200.
// When it never comes, the failure names the commands the page asked for instead.
async function conComando(pagina, comando, accion) {
  const patron = new RegExp(`/cgi-bin/cambioIP\\.cgi\\?(?:[^#]*&)?command=${comando}(?:&|$)`);
  const pedidos = [];
  const anota = (peticion) => {
    if (peticion.url().includes('/cgi-bin/')) pedidos.push(peticion.url().replace(/^.*\/cgi-bin\//, ''));
  };
  pagina.on('request', anota);
  try {
    const [respuesta] = await Promise.all([
      pagina.waitForResponse((r) => patron.test(r.url())).catch((error) => {
        assert.fail(`no request for command ${comando}; the page asked for: ${pedidos.join(', ') || 'nothing'} ` +
          `(${error.message.split('\n')[0]})`);
      }),
      accion(),
    ]);
    assert.equal(respuesta.status(), 200, `command ${comando} answered ${respuesta.status()}`);
  } finally {
    pagina.off('request', anota);
  }
}

// Waits until the shell says the route's page is in place.
async function esperaRuta(pagina, ruta) {
  try {
    await pagina.waitForSelector(`main#contenido[data-estado="listo"][data-ruta="${ruta}"]`,
      { state: 'attached' });
  } catch (error) {
    const estado = await pagina.evaluate(() => {
      const main = document.querySelector('main#contenido');
      return `${location.href}, main#contenido ${main ? `data-estado="${main.dataset.estado}" ` +
        `data-ruta="${main.dataset.ruta}"` : 'missing'}`;
    }).catch(() => 'the page is gone');
    assert.fail(`route ${ruta} never became ready: ${estado} (${error.message.split('\n')[0]})`);
  }
}

// The data table's size and header row, the same way for the shell's content area and for
// a whole CGI answer, so the two can be compared.
function huellaTabla(raiz) {
  const tabla = raiz.querySelector('#tabadatos');
  if (!tabla) return null;
  const celdas = tabla.rows[0] ? [...tabla.rows[0].cells] : [];
  return {
    filas: tabla.rows.length,
    cabecera: celdas.map((celda) => celda.textContent.replace(/\s+/g, ' ').trim()),
  };
}

async function tablaDelCGI(pagina, comando) {
  if (!tablasCGI.has(comando)) {
    const respuesta = await pagina.request.get(`${servidor.url}cgi-bin/cambioIP.cgi?command=${comando}`);
    assert.equal(respuesta.status(), 200, `command ${comando} answered ${respuesta.status()}`);
    const html = await respuesta.text();
    const documento = await pagina.evaluateHandle(
      (texto) => new DOMParser().parseFromString(texto, 'text/html'), html);
    const huella = await documento.evaluate(huellaTabla);
    await documento.dispose();
    assert.ok(huella, `command ${comando} answered without a #tabadatos table`);
    tablasCGI.set(comando, huella);
  }
  return tablasCGI.get(comando);
}

// The content area holds the CGI's table for this route's command: its rows and its
// columns, in front of any column the page scripts add (the unit list's operations).
async function compruebaContenido(pagina, { ruta, comando }) {
  const enPantalla = await pagina.$eval('main#contenido', huellaTabla);
  assert.ok(enPantalla, `route ${ruta}: no #tabadatos table in main#contenido`);
  const delCGI = await tablaDelCGI(pagina, comando);
  assert.deepEqual({ filas: enPantalla.filas, cabecera: enPantalla.cabecera.slice(0, delCGI.cabecera.length) }, delCGI,
    `route ${ruta}: the table on screen is not the one of command ${comando}`);
}

// Every image, style sheet, script and icon the page refers to (also images named only
// inside a style sheet) answers 200, and every image on the page decodes.
async function compruebaRecursos(pagina) {
  await pagina.waitForFunction(() => [...document.images].every((img) => img.complete));
  const { urls, rotas } = await pagina.evaluate(() => {
    const urls = new Set();
    const anade = (url, base) => {
      try {
        const absoluta = new URL(url, base || document.baseURI);
        if (absoluta.origin === location.origin) urls.add(absoluta.href.replace(/#.*$/, ''));
      } catch {
        urls.add(`unparsable: ${url}`);
      }
    };
    for (const el of document.querySelectorAll('img[src], input[type="image"][src], script[src]'))
      anade(el.getAttribute('src'));
    for (const el of document.querySelectorAll('link[rel~="stylesheet"][href], link[rel~="icon"][href]'))
      anade(el.getAttribute('href'));
    // Without an icon of its own the browser asks for /favicon.ico, and a 404 there is a
    // console error on every load (reported only now and then, so it is asked here).
    if (!document.querySelector('link[rel~="icon"]')) anade('/favicon.ico');
    const enCSS = (texto, base) => {
      for (const m of texto.matchAll(/url\(\s*(['"]?)([^'")]+)\1\s*\)/g))
        if (!m[2].startsWith('data:')) anade(m[2], base);
    };
    for (const hoja of document.styleSheets) {
      let reglas = [];
      try { reglas = [...hoja.cssRules]; } catch { /* another origin's sheet */ }
      for (const regla of reglas) enCSS(regla.cssText, hoja.href || document.baseURI);
    }
    for (const el of document.querySelectorAll('[style*="url("]')) enCSS(el.getAttribute('style'));
    const rotas = [...document.images].filter((img) => img.naturalWidth === 0).map((img) => img.src);
    return { urls: [...urls].sort(), rotas };
  });
  const malas = [];
  for (const url of urls) {
    if (url.startsWith('unparsable: ')) {
      malas.push(url);
      continue;
    }
    const respuesta = await pagina.request.get(url);
    if (respuesta.status() !== 200) malas.push(`${respuesta.status()} ${url}`);
  }
  assert.deepEqual(malas, [], 'resources the page refers to that do not answer 200');
  assert.deepEqual(rotas, [], 'images on the page that do not decode');
}

describe('the shell opens every menu route', () => {
  for (const [i, destino] of RUTAS.entries()) {
    const origen = RUTAS[(i + RUTAS.length - 1) % RUTAS.length];

    test(`${destino.ruta} (command ${destino.comando}) from the menu, then back to ${origen.ruta} and forward`, () =>
      enPagina(`menu-${destino.ruta}`, async (pagina) => {
        await conComando(pagina, origen.comando, () => pagina.goto(`${servidor.url}#/${origen.ruta}`));
        await esperaRuta(pagina, origen.ruta);

        const enlace = pagina.locator(`nav#menu a[href="#/${destino.ruta}"]`);
        assert.equal(await enlace.count(), 1, `one menu link to #/${destino.ruta}`);
        await conComando(pagina, destino.comando, () => enlace.click());
        await esperaRuta(pagina, destino.ruta);
        await compruebaContenido(pagina, destino);

        await pagina.goBack();
        await esperaRuta(pagina, origen.ruta);
        assert.equal(new URL(pagina.url()).hash, `#/${origen.ruta}`);
        await compruebaContenido(pagina, origen);

        await pagina.goForward();
        await esperaRuta(pagina, destino.ruta);
        assert.equal(new URL(pagina.url()).hash, `#/${destino.ruta}`);
        await compruebaContenido(pagina, destino);
      }));

    test(`${destino.ruta} (command ${destino.comando}) from a link straight to /#/${destino.ruta}`, () =>
      enPagina(`deep-link-${destino.ruta}`, async (pagina) => {
        await conComando(pagina, destino.comando, () => pagina.goto(`${servidor.url}#/${destino.ruta}`));
        await esperaRuta(pagina, destino.ruta);
        await compruebaContenido(pagina, destino);
      }));
  }
});
