// The output pages' table and mode swaps (www/js/modos.js): after the operator changes a
// unit's channel table or modulation, the row's dependent cells must be what the CGI itself
// paints when the unit's document holds that table or mode. Each case changes the select in
// the browser, plants the value in the unit's document on the test rack, loads the page in
// a second tab and compares the cells, control by control (markup, value, disabled state,
// options). The row stays tracked as changed, and nothing shows a console error.
'use strict';

const fs = require('node:fs');
const { test } = require('node:test');
const assert = require('node:assert/strict');
const { conCaptura } = require('./navegador.js');
const banco = require('./banco.js');

const RUTA = 'output';

// Every element of a cell as the operator's browser holds it: tag, attributes (the boolean
// ones by presence), current value, disabled state, chosen option and the options' texts;
// and the cell's visible text.
function describeCeldas(pagina, ids) {
  return pagina.evaluate((ids) => {
    const BOOLEANOS = new Set(['selected', 'disabled', 'checked', 'readonly']);
    const describe = (raiz) => {
      const elementos = [...raiz.querySelectorAll('*')].map((el) => ({
        tag: el.tagName,
        atributos: [...el.attributes].map((a) => [a.name, BOOLEANOS.has(a.name) ? true : a.value]).sort(),
        valor: 'value' in el ? el.value : null,
        deshabilitado: !!el.disabled,
        elegida: el.tagName === 'SELECT' ? el.selectedIndex : null,
        opciones: el.tagName === 'SELECT' ? [...el.options].map((o) => `${o.value}=${o.text}`) : null,
      }));
      return { texto: raiz.textContent.trim(), elementos };
    };
    const celdas = {};
    for (const id of ids) {
      // A div the CGI names, or the cell of the control of that name.
      const raiz = document.getElementById(id)?.tagName === 'DIV'
        ? document.getElementById(id)
        : document.querySelector(`#contenido [name="${id}"]`)?.closest('td');
      celdas[id] = raiz ? describe(raiz) : null;
    }
    return celdas;
  }, ids);
}

// Writes `valores` ({TAG: value}) into the unit's output section of its document.
function planta(raiz, sufijo, seccion, valores) {
  const fichero = banco.documentoDe({ raiz }, sufijo);
  const original = fs.readFileSync(fichero, 'utf8');
  const patron = new RegExp(`<${seccion}>[\\s\\S]*?</${seccion}>`);
  assert.match(original, patron, `the unit's document has a ${seccion} section`);
  const cambiado = original.replace(patron, (bloque) => {
    for (const [etiqueta, valor] of Object.entries(valores)) {
      const campo = new RegExp(`<${etiqueta}>[^<]*</${etiqueta}>`);
      assert.match(bloque, campo, `${seccion} has ${etiqueta}`);
      bloque = bloque.replace(campo, `<${etiqueta}>${valor}</${etiqueta}>`);
    }
    return bloque;
  });
  fs.writeFileSync(fichero, cambiado);
  return () => fs.writeFileSync(fichero, original);
}

const COFDM_CELDAS = (s) => [`divoutchn${s}`, `divfrecstep${s}`, `divanchobanda${s}`, `divintguarda${s}`,
  `divfecsal${s}`, `divcellid${s}`, `divbaudrate${s}`];

// rack, unit suffix, the select changed (base), the value chosen, the document section and
// tag the value is stored under, the cells that depend on it, and `llama` when the handler
// is called directly rather than through the select's own onchange.
const CASOS = [
  // QAM: the channel widget follows the table (CATV, T_CHANNELS, BROADCAST, FREQUENCY).
  ...[['_010_000_000_021', '2'], ['_010_000_000_021', '3'], ['_010_000_000_021', '4'],
    ['_010_000_000_101', '4'], ['_010_000_000_022', '2'], ['_010_000_000_022', '3']].map(([s, v]) => ({
    funcion: 'CambioTablaCanalesSalida', rack: 'qam', sufijo: s, base: 'outtab', valor: v,
    seccion: 'SALIDAQAM', etiqueta: 'TABLA', celdas: [`div${s}`],
  })),
  // QAM: Annex A frees the baud rate and locks the interleaver, Annex B the other way.
  ...[['_010_000_000_021', '2'], ['_010_000_000_021', '8'], ['_010_000_000_103', '0'],
    ['_010_000_000_103', '1']].map(([s, v]) => ({
    funcion: 'CambioModoQAM', rack: 'qam', sufijo: s, base: 'outmod', valor: v,
    seccion: 'SALIDAQAM', etiqueta: 'MODOSALIDA', celdas: [`outbau${s}`, `outint${s}`],
  })),
  ...[['_010_000_000_021', '5'], ['_010_000_000_103', '1']].map(([s, v]) => ({
    funcion: 'CambioModoSalidaSalida', rack: 'qam', sufijo: s, base: 'outmod', valor: v, llama: true,
    seccion: 'SALIDAQAM', etiqueta: 'MODOSALIDA', celdas: [`outbau${s}`, `outint${s}`],
  })),
  // COFDM: plan 0 types the frequency and offers the steps; a plan lists its channels.
  ...[['_010_000_000_032', '4'], ['_010_000_000_032', '10'], ['_010_000_000_104', '1'],
    ['_010_000_000_102', '0'], ['_010_000_000_102', '7']].map(([s, v]) => ({
    funcion: 'CambioTablaCanalesSalidaCOFDM', rack: 'cofdm', sufijo: s, base: 'outtab', valor: v,
    seccion: 'SALIDACOFDM', etiqueta: 'TABLA', celdas: COFDM_CELDAS(s),
  })),
  // COFDM: the OFDM settings, the baud rate and plan 0's steps follow the kind of mode.
  ...[['_010_000_000_032', '0'], ['_010_000_000_032', '2'], ['_010_000_000_104', '12'],
    ['_010_000_000_104', '16'], ['_010_000_000_102', '14']].map(([s, v]) => ({
    funcion: 'CambioModoCOFDM', rack: 'cofdm', sufijo: s, base: 'outmod', valor: v,
    seccion: 'SALIDACOFDM', etiqueta: 'MODO', celdas: COFDM_CELDAS(s),
  })),
  // COFDM/QAM-B: the plans follow the kind of mode (a plan the mode does not offer gives way
  // to plan 0), the DVB-T settings go n/a in Annex B, the baud rate stays fixed.
  ...[['', '4'], ['_010_000_000_052', '1']].map(([s, v]) => ({
    funcion: 'CambioModoCOFDMQAMB', rack: 'cofdmqamb', sufijo: s, base: 'outmod', valor: v,
    seccion: 'SALIDACOFDM', etiqueta: 'MODO', celdas: [`outtab${s}`, ...COFDM_CELDAS(s)],
  })),
  ...[['_010_000_000_052', '13'], ['_010_000_000_052', '0']].map(([s, v]) => ({
    funcion: 'CambioTablaCanalesSalidaCOFDM', rack: 'cofdmqamb', sufijo: s, base: 'outtab', valor: v,
    seccion: 'SALIDACOFDM', etiqueta: 'TABLA', celdas: COFDM_CELDAS(s),
  })),
  // ISDB-T: the Broadcast plan lists its channels and fixes the step; the mode chooses the
  // transmission modes and the time interleaving.
  ...[['', '0'], ['_010_000_000_042', '12']].map(([s, v]) => ({
    funcion: 'CambioTablaCanalesSalidaISDBT', rack: 'isdbt', sufijo: s, base: 'outtab', valor: v,
    seccion: 'SALIDAISDBT', etiqueta: 'TABLA', celdas: [`divoutchn${s}`, `divfrecstep${s}`],
  })),
  ...[['', '5'], ['_010_000_000_042', '2']].map(([s, v]) => ({
    funcion: 'CambioModoISDBT', rack: 'isdbt', sufijo: s, base: 'outmod', valor: v,
    seccion: 'SALIDAISDBT', etiqueta: 'MODO', celdas: [`outofdm${s}`, `divinterleaving${s}`],
  })),
];

for (const caso of CASOS) {
  const nombre = `${caso.base}${caso.sufijo}`;
  test(`${caso.funcion}: ${caso.rack} ${nombre} -> ${caso.valor}`, async () => {
    const servidor = await banco.servidorDe(caso.rack);
    const contexto = await banco.navegador().newContext();
    const problemas = [];
    let restaura = () => {};
    try {
      const { pagina } = await banco.abre(servidor, problemas, RUTA, contexto);
      await conCaptura(pagina, `modos-${caso.funcion}-${nombre}-${caso.valor}`, async () => {
        const select = pagina.locator(`#contenido select[name="${nombre}"]`);
        const antes = await describeCeldas(pagina, caso.celdas);
        assert.notEqual(await select.inputValue(), caso.valor, 'the case changes the value');
        if (caso.llama) {
          await select.evaluate((el, { funcion, valor }) => {
            el.value = valor;
            window[funcion](el);
            window.Compruebacambios(el);
          }, caso);
        } else {
          await select.selectOption(caso.valor);
        }
        const cambiadas = await describeCeldas(pagina, caso.celdas);
        for (const id of caso.celdas) assert.ok(cambiadas[id], `the page shows ${id}`);
        const marcada = await select.evaluate((el) => el.closest('tr').classList.contains('fila-cambiada'));
        assert.ok(marcada, 'the row is marked as changed');

        restaura = planta(servidor.raiz, caso.sufijo, caso.seccion, { [caso.etiqueta]: caso.valor });
        const { pagina: segunda } = await banco.abre(servidor, problemas, RUTA, contexto);
        const pintadas = await describeCeldas(segunda, caso.celdas);
        assert.deepEqual(cambiadas, pintadas, 'the repainted cells are what the CGI paints for that value');
        assert.notDeepEqual(antes, pintadas, 'the value changes what the row shows');
        assert.deepEqual(problemas.flat(), [], 'the pages showed errors or failed requests');
      });
    } finally {
      restaura();
      await contexto.close();
    }
  });
}

// The virtual-channel table of a service line: "CVCT 1" shows the one-part number the CGI
// paints for it, with the major range of that table, and going back splits it again.
test('transport: the table type of a line repaints its channel number as the CGI does', () =>
  banco.comparaConCGI('tipo-tabla', {
    ruta: 'transport',
    sufijo: '_010_000_000_021',
    ediciones: [[['SALIDATS', 'CANAL1', 'CHNUMBER', 'TABLETYPE'], '1']],
    accion: (pagina) => pagina.locator('#contenido [name="autochan1_010_000_000_021"]').selectOption('1'),
    despues: async (pagina, antes) => {
      const mayor = pagina.locator('#contenido [name="mchn1_010_000_000_021"]');
      assert.match(await mayor.getAttribute('onblur'), /ValidarEntero\(this,'1','16383'\)/);
      await pagina.locator('#contenido [name="autochan1_010_000_000_021"]').selectOption('0');
      assert.deepEqual(await banco.estadoFila(pagina, '_010_000_000_021'), antes, 'TVCT again splits the number back');
    },
  }));
