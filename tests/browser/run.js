// run.js: runs one browser test file with node:test, as CTest does:
//
//   node run.js <file.test.js> --cgi <cambioIP.cgi> [--screenshots <folder>]
//
// When the browser, playwright-core or lighttpd is missing the file cannot run: outside CI
// that is reported to CTest as skipped (exit 77, the test's SKIP_RETURN_CODE); in CI
// (environment variable CI set) it is a failure, because CI must run every test.
// The file's tests see the CGI in CAMBIOIP_CGI and the screenshot folder in CAMBIOIP_CAPTURAS;
// a failing test's screenshot is <folder>/<file name without .test.js>.<test>.png.
'use strict';

const fs = require('node:fs');
const path = require('node:path');
const { faltaParaNavegador } = require('./navegador.js');
const { buscaLighttpd } = require('./servidor.js');

const SALTADO = 77;

function uso(mensaje) {
  console.error(`${mensaje}\nusage: node run.js <file.test.js> --cgi <cambioIP.cgi> [--screenshots <folder>]`);
  process.exit(2);
}

function argumentos(lista) {
  const opciones = { fichero: null, cgi: null, capturas: null };
  for (let i = 0; i < lista.length; i++) {
    const a = lista[i];
    if (a === '--cgi') opciones.cgi = lista[++i];
    else if (a === '--screenshots') opciones.capturas = lista[++i];
    else if (a.startsWith('--')) uso(`unknown option ${a}`);
    else if (opciones.fichero) uso(`one test file only, got ${opciones.fichero} and ${a}`);
    else opciones.fichero = a;
  }
  if (!opciones.fichero) uso('the test file is missing');
  if (!opciones.cgi) uso('--cgi is missing');
  return opciones;
}

async function principal() {
  const opciones = argumentos(process.argv.slice(2));
  const fichero = path.resolve(opciones.fichero);
  const cgi = path.resolve(opciones.cgi);
  if (!fs.existsSync(fichero)) uso(`no test file ${fichero}`);
  // A CGI that is not there is a broken build, never a reason to skip.
  try {
    fs.accessSync(cgi, fs.constants.X_OK);
  } catch {
    console.error(`cambioIP.cgi is not built at ${cgi}`);
    process.exit(1);
  }

  const falta = faltaParaNavegador();
  if (!buscaLighttpd()) falta.push('lighttpd is not installed (make deps installs it)');
  if (falta.length) {
    const lista = falta.map((f) => `  - ${f}`).join('\n');
    if (process.env.CI) {
      console.error(`The browser tests cannot run in CI:\n${lista}\nRun make deps on this machine.`);
      process.exit(1);
    }
    console.log(`SKIPPED ${path.basename(fichero)}: the browser tests cannot run here:\n${lista}\n` +
      'make deps installs what is missing.');
    process.exit(SALTADO);
  }

  const capturas = path.resolve(opciones.capturas || path.join(path.dirname(cgi), 'browser-screenshots'));
  const prefijo = path.basename(fichero).replace(/\.test\.js$/, '');
  process.env.CAMBIOIP_CGI = cgi;
  process.env.CAMBIOIP_CAPTURAS = capturas;
  process.env.CAMBIOIP_CAPTURAS_PREFIJO = prefijo;
  // Screenshots of an earlier run of this file would pass for failures of this one.
  if (fs.existsSync(capturas))
    for (const viejo of fs.readdirSync(capturas))
      if (viejo.startsWith(`${prefijo}.`) && viejo.endsWith('.png')) fs.rmSync(path.join(capturas, viejo));

  const { run } = require('node:test');
  const { tap } = require('node:test/reporters');
  let fallos = 0;
  let pruebas = 0;
  const flujo = run({ files: [fichero], timeout: 12 * 60 * 1000 });
  // Suites are counted through their tests. A file without tests is reported as one test
  // named after the file: it fails when the file cannot load, and it is no test when it passes.
  flujo.on('test:fail', (evento) => {
    if (evento.details?.type !== 'suite') fallos++;
  });
  flujo.on('test:pass', (evento) => {
    if (evento.details?.type !== 'suite' && evento.name !== fichero) pruebas++;
  });
  flujo.compose(tap).pipe(process.stdout);
  await new Promise((resolve) => flujo.once('end', resolve));
  if (fallos === 0 && pruebas === 0) {
    console.error(`${path.basename(fichero)} ran no test`);
    process.exitCode = 1;
  } else if (fallos) {
    console.error(`${fallos} browser test(s) failed; screenshots of failing pages, if any were taken, are in ${capturas}`);
    process.exitCode = 1;
  }
}

principal().catch((error) => {
  console.error(error);
  process.exit(1);
});
