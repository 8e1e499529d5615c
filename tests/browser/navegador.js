// navegador.js: what every browser test needs besides the server: the check that the
// tests can run here, Debian's chromium launched through playwright-core, a watch over
// each page for console errors and failed requests, and a screenshot when a test fails.
'use strict';

const fs = require('node:fs');
const path = require('node:path');

const CHROMIUM = process.env.CAMBIOIP_CHROMIUM || '/usr/bin/chromium';

// Without the background-networking flags, Debian's chromium keeps reaching out to Google
// services and the tests' own connections are refused over and over. playwright-core adds
// --headless and a fresh temporary --user-data-dir (removed when the browser closes).
const ARGUMENTOS = [
  '--no-sandbox', '--disable-gpu', '--disable-quic', '--no-first-run',
  '--disable-background-networking', '--disable-component-update', '--disable-sync',
  '--disable-dev-shm-usage', '--disable-extensions', '--mute-audio',
];

// What keeps the browser tests from running here, as readable reasons; empty when nothing.
function faltaParaNavegador() {
  const falta = [];
  const mayor = Number(process.versions.node.split('.')[0]);
  if (mayor < 20) falta.push(`node ${process.versions.node} is older than 20, which playwright-core needs`);
  try {
    require.resolve('playwright-core', { paths: [__dirname] });
  } catch {
    falta.push(`playwright-core is not installed in ${path.join(__dirname, 'node_modules')} (make deps runs npm ci there)`);
  }
  try {
    fs.accessSync(CHROMIUM, fs.constants.X_OK);
  } catch {
    falta.push(`chromium is not installed at ${CHROMIUM} (make deps installs Debian's package)`);
  }
  return falta;
}

async function abreNavegador() {
  const { chromium } = require('playwright-core');
  return chromium.launch({ executablePath: CHROMIUM, headless: true, args: ARGUMENTOS });
}

// Collects, for one page, everything that would show the operator a broken page: errors
// written to the console, uncaught script errors, requests that never got an answer and
// answers with an error status. `problemas` is the list so far, one line each.
function vigilaPagina(pagina) {
  const problemas = [];
  pagina.on('console', (mensaje) => {
    if (mensaje.type() === 'error') {
      const { url, lineNumber } = mensaje.location();
      problemas.push(`console error: ${mensaje.text()}${url ? ` (${url}:${lineNumber})` : ''}`);
    }
  });
  pagina.on('pageerror', (error) => problemas.push(`uncaught script error: ${error.message}`));
  pagina.on('requestfailed', (peticion) => {
    const motivo = peticion.failure()?.errorText ?? '';
    // The browser cancels what a page no longer needs (an image of content that was just
    // replaced): that is the page moving on, not a request that went wrong.
    if (motivo === 'net::ERR_ABORTED') return;
    problemas.push(`request failed: ${peticion.method()} ${peticion.url()}: ${motivo}`);
  });
  pagina.on('response', (respuesta) => {
    if (respuesta.status() >= 400)
      problemas.push(`answer ${respuesta.status()} for ${respuesta.request().method()} ${respuesta.url()}`);
  });
  return problemas;
}

// Runs `cuerpo`; when it throws, saves a screenshot of `pagina` as
// <folder>/<test file>.<name>.png and adds its path to the error, so a failure in CI shows
// what the operator would have seen. run.js names the folder and the test file.
async function conCaptura(pagina, nombre, cuerpo) {
  try {
    return await cuerpo();
  } catch (error) {
    const carpeta = process.env.CAMBIOIP_CAPTURAS;
    if (carpeta && pagina && !pagina.isClosed()) {
      const prefijo = process.env.CAMBIOIP_CAPTURAS_PREFIJO ? `${process.env.CAMBIOIP_CAPTURAS_PREFIJO}.` : '';
      const fichero = path.join(carpeta, `${prefijo}${nombre}.png`.replace(/[^A-Za-z0-9._-]+/g, '_'));
      let nota;
      try {
        fs.mkdirSync(carpeta, { recursive: true });
        await pagina.screenshot({ path: fichero, fullPage: true, timeout: 10000 });
        nota = `screenshot of the failing page: ${fichero}`;
      } catch (fallo) {
        nota = `no screenshot of the failing page: ${fallo.message}`;
      }
      console.error(`${nombre}: ${nota}`);
      if (error instanceof Error) {
        error.message += `\n${nota}`;
        error.stack = `${error.stack}\n${nota}`;
      }
    }
    throw error;
  }
}

module.exports = { CHROMIUM, faltaParaNavegador, abreNavegador, vigilaPagina, conCaptura };
