// The IP input/output page (www/js/salidaip.js): changing a unit's IP MODE, its output type,
// a line's enable box, protocol or FEC box leaves every control of the unit's row as the
// CGI itself paints a unit stored with the new value. The oracle is the CGI: the value is
// planted in the unit's document of the rack copy, the page is loaded again, and the row's
// controls are compared. Nothing of it may show a console error.
'use strict';

const fs = require('node:fs');
const path = require('node:path');
const { describe, test, before, after } = require('node:test');
const assert = require('node:assert/strict');
const { arrancaServidor } = require('./servidor.js');
const { abreNavegador, vigilaPagina, conCaptura } = require('./navegador.js');

const ESPERA_MS = 15000;
const RUTA = 'ip';

let navegador;
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

async function abre(servidor, problemas) {
  const contexto = await navegador.newContext();
  const pagina = await contexto.newPage();
  pagina.setDefaultTimeout(ESPERA_MS);
  problemas.push(vigilaPagina(pagina));
  await pagina.goto(`${servidor.url}#/${RUTA}`);
  await pagina.waitForSelector(`main#contenido[data-estado="listo"][data-ruta="${RUTA}"]`, { state: 'attached' });
  return { contexto, pagina };
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
async function comparaConCGI(nombre, { rack = 'qam', sufijo, ediciones, accion, despues }) {
  const servidor = await servidorDe(rack);
  const problemas = [];
  const { contexto, pagina } = await abre(servidor, problemas);
  const fichero = documentoDe(servidor, sufijo);
  const original = fs.readFileSync(fichero, 'utf8');
  try {
    await conCaptura(pagina, nombre, async () => {
      const antes = await estadoFila(pagina, sufijo);
      await accion(pagina);
      const cambiado = await estadoFila(pagina, sufijo);
      assert.notDeepEqual(cambiado, antes, 'the change shows on the row');

      fs.writeFileSync(fichero, ediciones.reduce((xml, [ruta, valor]) => planta(xml, ruta, valor), original));
      const oraculo = await abre(servidor, problemas);
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

const elige = (nombre, valor) => async (pagina) => {
  await pagina.locator(`#contenido [name="${nombre}"]`).selectOption(valor);
};
// The FEC cells are hidden columns: their controls are clicked from the page.
const pulsa = (nombre) => async (pagina) => {
  await pagina.locator(`#contenido [name="${nombre}"]`).evaluate((c) => c.click());
};
const filaMarcada = async (pagina, sufijo) => pagina.locator(`#contenido [name="forzarconfig${sufijo}"]`).isChecked();

// Unit 105 (qam): an SPTS Output of two encoder inputs with two IP entries, both lines on.
// Unit 103 (qam): an MPTS Output, lines painted off. The cofdm rack has no Standard column.
const CASOS = [
  {
    nombre: 'IP MODE Output -> Input: source addresses, Standard and type locked',
    sufijo: '_010_000_000_105', accion: elige('iptxrx_010_000_000_105', '2'),
    ediciones: [[['SALIDAIP', 'TXRX'], '2']],
  },
  {
    // A disabled port shows the stored destination as it is; the page holds it with the
    // CGI's defaults filled in (line 2 stores port 80), so the oracle stores it in full.
    nombre: 'IP MODE Output -> Disabled: every line off, no enable boxes',
    sufijo: '_010_000_000_105', accion: elige('iptxrx_010_000_000_105', '0'),
    ediciones: [[['SALIDAIP', 'TXRX'], '0'], [['SALIDAIP', 'SALIDA2', 'PUERTO'], '5002']],
  },
  {
    nombre: 'IP MODE MPTS Output -> Disabled',
    sufijo: '_010_000_000_103', accion: elige('iptxrx_010_000_000_103', '0'),
    ediciones: [[['SALIDAIP', 'TXRX'], '0']],
  },
  {
    nombre: 'SPTS -> MPTS: a single stream, its lines off',
    sufijo: '_010_000_000_105', accion: elige('iptype_010_000_000_105', '1'),
    ediciones: [[['SALIDAIP', 'TIPO'], '1']],
    // Back to SPTS, the lines come back as they were painted.
    despues: async (pagina, antes) => {
      await elige('iptype_010_000_000_105', '0')(pagina);
      assert.deepEqual(await estadoFila(pagina, '_010_000_000_105'), antes);
    },
  },
  {
    nombre: 'a line unticked: its controls off',
    sufijo: '_010_000_000_105', accion: pulsa('ipen1_010_000_000_105'),
    ediciones: [[['SALIDAIP', 'SALIDA1', 'ENABLED'], '0']],
    despues: async (pagina) => assert.equal(await filaMarcada(pagina, '_010_000_000_105'), true, 'the row is marked'),
  },
  {
    nombre: 'RTP -> UDP: the FEC controls stay as painted',
    sufijo: '_010_000_000_105', accion: elige('ipproto1_010_000_000_105', '0'),
    ediciones: [[['SALIDAIP', 'SALIDA1', 'PROTOCOL'], '0']],
  },
  {
    nombre: 'FEC ticked: the annex follows the line',
    sufijo: '_010_000_000_105', accion: pulsa('ipfecen1_010_000_000_105'),
    ediciones: [[['SALIDAIP', 'SALIDA1', 'FEC'], '1']],
  },
  {
    nombre: 'cofdm: IP MODE MPTS Input -> Output: destination addresses, type free',
    rack: 'cofdm', sufijo: '', accion: elige('iptxrx', '1'),
    ediciones: [[['SALIDAIP', 'TXRX'], '1']],
  },
  {
    nombre: 'cofdm: an Input line unticked',
    rack: 'cofdm', sufijo: '', accion: pulsa('ipen1'),
    ediciones: [[['SALIDAIP', 'SALIDA1', 'ENABLED'], '0']],
  },
];

describe('a change on the IP page paints the row as the CGI does for the stored value', () => {
  for (const caso of CASOS)
    test(`${caso.rack ?? 'qam'}: ${caso.nombre}`, () => comparaConCGI(caso.nombre, caso));
});

test('an address typed for the Output is kept while the port is switched to Input and back', async () => {
  const servidor = await servidorDe('qam');
  const problemas = [];
  const { contexto, pagina } = await abre(servidor, problemas);
  try {
    await conCaptura(pagina, 'ida-y-vuelta', async () => {
      const ip = pagina.locator('#contenido [name="outputIP1_010_000_000_105"]');
      const puerto = pagina.locator('#contenido [name="outputport1_010_000_000_105"]');
      await ip.fill('239.77.0.9');
      await puerto.fill('5077');
      await elige('iptxrx_010_000_000_105', '2')(pagina);
      assert.deepEqual([await ip.inputValue(), await puerto.inputValue()], ['226.1.1.2', '6001'], 'the source is shown');
      await elige('iptxrx_010_000_000_105', '1')(pagina);
      assert.deepEqual([await ip.inputValue(), await puerto.inputValue()], ['239.77.0.9', '5077']);
      assert.equal(await filaMarcada(pagina, '_010_000_000_105'), true, 'the row is marked');
      assert.deepEqual(problemas.flat(), []);
    });
  } finally {
    await contexto.close();
  }
});
