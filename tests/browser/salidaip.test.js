// The IP input/output page (www/js/salidaip.js): changing a unit's IP MODE, its output type,
// a line's enable box, protocol or FEC box leaves every control of the unit's row as the
// CGI itself paints a unit stored with the new value. The oracle is the CGI: the value is
// planted in the unit's document of the rack copy, the page is loaded again, and the row's
// controls are compared. Nothing of it may show a console error.
'use strict';

const fs = require('node:fs');
const path = require('node:path');
const { describe, test } = require('node:test');
const assert = require('node:assert/strict');
const { conCaptura } = require('./navegador.js');
const banco = require('./banco.js');

const { servidorDe, documentoDe, planta, estadoFila } = banco;
const RUTA = 'ip';

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
    test(`${caso.rack ?? 'qam'}: ${caso.nombre}`, () => banco.comparaConCGI(caso.nombre, { ruta: RUTA, ...caso }));
});

test('an address typed for the Output is kept while the port is switched to Input and back', async () => {
  const servidor = await servidorDe('qam');
  const problemas = [];
  const { contexto, pagina } = await banco.abre(servidor, problemas, RUTA);
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
