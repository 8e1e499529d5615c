// The frame the browser test files share: one Chromium for the file, one server per rack
// started when a test first needs it (or a fresh one for a test that writes to its rack),
// pages opened on a route and waited for, and the comparison of a unit's row with what the
// CGI paints for a stored value.
'use strict';

const fs = require('node:fs');
const path = require('node:path');
const { before, after } = require('node:test');
const assert = require('node:assert/strict');
const { arrancaServidor } = require('./servidor.js');
const { abreNavegador, vigilaPagina, conCaptura } = require('./navegador.js');

// Generous: a page may come slowly from a loaded machine; nothing here measures speed.
const ESPERA_MS = 15000;

let navegador;
// rack -> its server.
const servidores = new Map();

before(async () => {
  navegador = await abreNavegador();
});

after(async () => {
  await navegador?.close();
  for (const servidor of servidores.values()) await servidor.para();
});

async function servidorDe(rack) {
  if (!servidores.has(rack))
    servidores.set(rack, await arrancaServidor({ cgi: process.env.CAMBIOIP_CGI, rack }));
  return servidores.get(rack);
}

// A new page in `contexto` (a fresh one when not given) showing the route once the shell
// has loaded it; the page's problems are added to `problemas`.
async function abre(servidor, problemas, ruta, contexto = null) {
  contexto ??= await navegador.newContext();
  const pagina = await contexto.newPage();
  pagina.setDefaultTimeout(ESPERA_MS);
  problemas.push(vigilaPagina(pagina));
  await pagina.goto(`${servidor.url}#/${ruta}`);
  await pagina.waitForSelector(`main#contenido[data-estado="listo"][data-ruta="${ruta}"]`, { state: 'attached' });
  return { contexto, pagina };
}

// Opens the route on the rack, runs `cuerpo(pagina)`, and requires that the page stayed on
// its route and showed no console error nor failed request; a failure leaves a screenshot.
async function enRuta(nombre, { rack = 'qam', ruta }, cuerpo) {
  const problemas = [];
  const { contexto, pagina } = await abre(await servidorDe(rack), problemas, ruta);
  try {
    await conCaptura(pagina, nombre, async () => {
      await cuerpo(pagina);
      assert.equal(new URL(pagina.url()).hash, `#/${ruta}`, 'the page stayed on its route');
      assert.deepEqual(problemas.flat(), [], 'the page showed errors or failed requests');
    });
  } finally {
    await contexto.close();
  }
}

// For a test that writes to the rack: a fresh copy with its own server and a fresh browser
// context. Runs `cuerpo({ pagina, servidor, peticiones })`, where `peticiones` lists the
// CGI requests the page made ("GET command=5", "POST command=21&..."); `preparar(servidor)`
// runs before. The page must show no console error nor failed request, and leave no
// config/web.lock behind.
async function enRackPropio(nombre, cuerpo, { rack = 'qam', preparar } = {}) {
  const servidor = await arrancaServidor({ cgi: process.env.CAMBIOIP_CGI, rack });
  const contexto = await navegador.newContext();
  const pagina = await contexto.newPage();
  pagina.setDefaultTimeout(ESPERA_MS);
  const problemas = vigilaPagina(pagina);
  const peticiones = [];
  pagina.on('request', (peticion) => {
    const url = peticion.url();
    if (!url.includes('/cgi-bin/')) return;
    peticiones.push(peticion.method() === 'POST'
      ? `POST ${peticion.postData() ?? ''}`
      : `GET ${url.replace(/^.*\?/, '')}`);
  });
  try {
    if (preparar) preparar(servidor);
    await conCaptura(pagina, nombre, async () => {
      await cuerpo({ pagina, servidor, peticiones });
      assert.deepEqual(problemas, [], 'the page showed errors or failed requests');
      assert.equal(existe(servidor, 'config/web.lock'), false, 'config/web.lock is left');
    });
  } finally {
    await contexto.close();
    await servidor.para();
  }
}

// A file of the rack copy, by its path under the root.
const lee = (servidor, relativa) => fs.readFileSync(path.join(servidor.raiz, relativa), 'utf8');
const existe = (servidor, relativa) => fs.existsSync(path.join(servidor.raiz, relativa));

// The unit's document in the rack copy: the master's is network.xml.
const documentoDe = (servidor, sufijo) =>
  path.join(servidor.raiz, 'config', sufijo ? `network.${sufijo.slice(1).replace(/_/g, '.')}.xml` : 'network.xml');

// Sets the text of the element reached by `ruta` (each tag searched after the previous one).
function planta(xml, ruta, valor) {
  let desde = 0;
  for (const etiqueta of ruta.slice(0, -1)) {
    desde = xml.indexOf(`<${etiqueta}>`, desde);
    assert.ok(desde >= 0, `the document has <${etiqueta}>`);
  }
  const hoja = ruta.at(-1);
  const inicio = xml.indexOf(`<${hoja}>`, desde);
  assert.ok(inicio >= 0, `the document has <${hoja}>`);
  const fin = xml.indexOf(`</${hoja}>`, inicio);
  return `${xml.slice(0, inicio + hoja.length + 2)}${valor}${xml.slice(fin)}`;
}

// What the operator sees of the unit's row: every control outside a hidden line, with its
// value, options, tick and whether it is disabled.
function estadoFila(pagina, sufijo) {
  return pagina.evaluate((sufijo) => {
    const caja = document.querySelector(`#contenido [name="forzarconfig${sufijo}"]`);
    const fila = caja.closest('tr');
    return [...fila.querySelectorAll('input[name], select[name], button[name]')]
      .filter((c) => c.type !== 'hidden' && !c.name.startsWith('forzarconfig') && !c.closest('div[hidden]'))
      .map((c) => ({
        nombre: c.name,
        valor: c.type === 'checkbox' ? c.checked : c.value ?? '',
        desactivado: c.disabled,
        opciones: c.tagName === 'SELECT' ? [...c.options].map((o) => o.value).join(',') : undefined,
      }));
  }, sufijo);
}

// Opens the page, runs `accion(pagina)`, and compares the row with the CGI's page for the
// document with `ediciones` ([path, value] pairs); the document is put back afterwards.
async function comparaConCGI(nombre, { rack = 'qam', ruta, sufijo, ediciones, accion, despues }) {
  const servidor = await servidorDe(rack);
  const problemas = [];
  const { contexto, pagina } = await abre(servidor, problemas, ruta);
  const fichero = documentoDe(servidor, sufijo);
  const original = fs.readFileSync(fichero, 'utf8');
  try {
    await conCaptura(pagina, nombre, async () => {
      const antes = await estadoFila(pagina, sufijo);
      await accion(pagina);
      const cambiado = await estadoFila(pagina, sufijo);
      assert.notDeepEqual(cambiado, antes, 'the change shows on the row');

      fs.writeFileSync(fichero, ediciones.reduce((xml, [ruta, valor]) => planta(xml, ruta, valor), original));
      const oraculo = await abre(servidor, problemas, ruta);
      try {
        assert.deepEqual(cambiado, await estadoFila(oraculo.pagina, sufijo), 'the row is as the CGI paints it');
      } finally {
        await oraculo.contexto.close();
      }
      if (despues) await despues(pagina, antes);
      assert.deepEqual(problemas.flat(), [], 'no page showed errors or failed requests');
    });
  } finally {
    fs.writeFileSync(fichero, original);
    await contexto.close();
  }
}

module.exports = {
  ESPERA_MS, servidorDe, abre, enRuta, enRackPropio, lee, existe, documentoDe, planta, estadoFila, comparaConCGI,
  navegador: () => navegador,
};
