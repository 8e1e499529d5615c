// The field checks of the configuration pages (www/js/validacion.js): a value the unit
// cannot take is marked with the reason and left exactly as typed, a valid one clears the
// mark, the key filters keep out what a field cannot hold, and the Apply script can ask for
// the refused fields. Nothing of it may show a console error.
'use strict';

const { describe, test } = require('node:test');
const assert = require('node:assert/strict');
const banco = require('./banco.js');

const { enRuta } = banco;

const campo = (pagina, nombre) => pagina.locator(`#contenido [name="${nombre}"]`);

// What the operator sees of a field: its value, whether it is marked as refused, the
// message after it, and what the Apply script is told.
function estadoCampo(pagina, nombre) {
  return campo(pagina, nombre).evaluate((el) => {
    const siguiente = el.nextElementSibling;
    return {
      valor: el.value,
      rechazado: el.classList.contains('campo-rechazado'),
      mensaje: siguiente?.matches('span.mensaje-rechazo') ? siguiente.textContent : null,
      rechazados: window.camposRechazados().map((c) => c.name),
    };
  });
}

// The operator types a value into the field and leaves it.
async function escribe(pagina, nombre, valor) {
  const c = campo(pagina, nombre);
  await c.fill(valor);
  await c.blur();
}

// Fields of the real pages: refused values with the message they show, then a valid value.
const RECHAZOS = [
  { pagina: 'network', ruta: 'network', nombre: 'orden_010_000_000_021', malos: ['0', 'abc', '1.5', ''],
    mensaje: 'Enter a whole number from 1 to 9999', bueno: '42' },
  { pagina: 'network', ruta: 'network', nombre: 'networkipdir_010_000_000_022',
    malos: ['300.1.1.1', '10.0.0', '10.0.0.1.5', '10.0.0.010', ''],
    mensaje: 'Enter an IP address as four numbers from 0 to 255 separated by dots, e.g. 192.168.1.10', bueno: '10.0.0.30' },
  { pagina: 'network (master)', ruta: 'network', nombre: 'gateway', malos: ['10.0.0.256'],
    mensaje: 'Enter an IP address as four numbers from 0 to 255 separated by dots, e.g. 192.168.1.10', bueno: '10.0.0.254' },
  { pagina: 'transport', ruta: 'transport', nombre: 'svpid2_010_000_000_021', malos: ['47', '8183', '0x100'],
    mensaje: 'Enter a PID (a whole number) from 48 to 8182', bueno: '300' },
  { pagina: 'transport', ruta: 'transport', nombre: 'tsid_010_000_000_021', malos: ['0', '65536'],
    mensaje: 'Enter a whole number from 1 to 65535', bueno: '65535' },
  { pagina: 'inputs', ruta: 'inputs', nombre: 'vidbit1_010_000_000_021', malos: ['1.5', '50.01', '3.555', '4.', '.5'],
    mensaje: 'Enter a number from 2 to 50, with at most 2 decimals', bueno: '12.75' },
  { pagina: 'output', ruta: 'output', nombre: 'outlev_010_000_000_105', malos: ['-1', '+5'],
    mensaje: 'Enter a whole number from 0 to 99', bueno: '0' },
  { pagina: 'output (COFDM rack)', rack: 'cofdm', ruta: 'output', nombre: 'cellid_010_000_000_102', malos: ['G1', '0x1A', '-1'],
    mensaje: 'Enter a hexadecimal number (digits 0-9, A-F) from 0x0 to 0xFFFF', bueno: 'ffff' },
  { pagina: 'transport (COFDM rack)', rack: 'cofdm', ruta: 'transport', nombre: 'tsid_010_000_000_102', malos: ['0'],
    mensaje: 'Enter a hexadecimal number (digits 0-9, A-F) from 0x1 to 0xFFFF', bueno: '1A' },
  { pagina: 'output (frequency plan)', rack: 'pages_qam_variants', ruta: 'output', nombre: 'outchn_010_000_000_063',
    malos: ['6', '1000', '47a'], mensaje: 'Channel: enter a number from 7 to 999', bueno: '473.25' },
];

describe('a refused value is marked and left as typed; a valid one clears the mark', () => {
  for (const caso of RECHAZOS) {
    test(`${caso.pagina}: ${caso.nombre}`, () =>
      enRuta(`rechazo-${caso.ruta}-${caso.nombre}`, caso, async (pagina) => {
        const antes = await estadoCampo(pagina, caso.nombre);
        assert.equal(antes.rechazado, false, 'the field is not refused as painted');
        for (const malo of caso.malos) {
          await escribe(pagina, caso.nombre, malo);
          assert.deepEqual(await estadoCampo(pagina, caso.nombre),
            { valor: malo, rechazado: true, mensaje: caso.mensaje, rechazados: [caso.nombre] },
            `value "${malo}"`);
          assert.equal(await pagina.locator('#contenido span.mensaje-rechazo').count(), 1,
            'one message, however many times the field is refused');
        }
        await escribe(pagina, caso.nombre, caso.bueno);
        assert.deepEqual(await estadoCampo(pagina, caso.nombre),
          { valor: caso.bueno, rechazado: false, mensaje: null, rechazados: [] });
      }));
  }

  test('two refused fields are both reported until each is corrected', () =>
    enRuta('rechazo-dos-campos', { ruta: 'network' }, async (pagina) => {
      await escribe(pagina, 'orden_010_000_000_021', '0');
      await escribe(pagina, 'networkmask_010_000_000_100', '255.255.255.256');
      assert.deepEqual((await estadoCampo(pagina, 'orden')).rechazados,
        ['orden_010_000_000_021', 'networkmask_010_000_000_100']);
      await escribe(pagina, 'orden_010_000_000_021', '1');
      assert.deepEqual((await estadoCampo(pagina, 'orden')).rechazados, ['networkmask_010_000_000_100']);
      // A refused field is still a changed one: its row is selected, and Apply refuses it.
      assert.equal(await pagina.locator('#contenido [name="forzarconfig_010_000_000_100"]').isChecked(), true);
    }));
});

// Key filters: what the operator types into the field, and what stays in it.
const FILTROS = [
  { pagina: 'network', ruta: 'network', nombre: 'orden_010_000_000_021', tecleado: '1a2.-3', queda: '123' },
  { pagina: 'network', ruta: 'network', nombre: 'networkipdir_010_000_000_021', tecleado: '10.x0.0,.7 ', queda: '10.0.0.7' },
  { pagina: 'inputs', ruta: 'inputs', nombre: 'vidbit1_010_000_000_021', tecleado: '1,2.5e', queda: '12.5' },
  { pagina: 'output (COFDM rack)', rack: 'cofdm', ruta: 'output', nombre: 'cellid_010_000_000_102', tecleado: '0x1fG', queda: '01f' },
];

describe('the key filters keep out what a field cannot hold', () => {
  for (const caso of FILTROS) {
    test(`${caso.pagina}: typing "${caso.tecleado}" into ${caso.nombre}`, () =>
      enRuta(`filtro-${caso.ruta}-${caso.nombre}`, caso, async (pagina) => {
        const c = campo(pagina, caso.nombre);
        await c.fill('');
        await c.pressSequentially(caso.tecleado);
        assert.equal(await c.inputValue(), caso.queda);
        // Editing keys are not filtered.
        await c.press('Backspace');
        assert.equal(await c.inputValue(), caso.queda.slice(0, -1));
      }));
  }
});

// Checks that no page of these racks prints today, called the way the page templates do, on
// a field of the page on screen: arguments, value typed, message (null when accepted).
const SIN_PAGINA = [
  ['ValidarHexaFiltro', ['0x10', '0x1ffe', '0x1000', '0x10ff'], '1000', 'Enter a hexadecimal number (digits 0-9, A-F) from 0x10 to 0x1FFE, outside 0x1000 to 0x10FF'],
  ['ValidarHexaFiltro', ['0x10', '0x1ffe', '0x1000', '0x10ff'], '10ff', 'Enter a hexadecimal number (digits 0-9, A-F) from 0x10 to 0x1FFE, outside 0x1000 to 0x10FF'],
  ['ValidarHexaFiltro', ['0x10', '0x1ffe', '0x1000', '0x10ff'], 'f', 'Enter a hexadecimal number (digits 0-9, A-F) from 0x10 to 0x1FFE, outside 0x1000 to 0x10FF'],
  ['ValidarHexaFiltro', ['0x10', '0x1ffe', '0x1000', '0x10ff'], '1100', null],
  ['ValidarHexaFiltro', ['0x10', '0x1ffe', '0x1000', '0x10ff'], '0fff', null],
  ['ValidarCadena', ['8', 'numeros+caracteres'], 'Lobby2', null],
  ['ValidarCadena', ['8', 'numeros+caracteres'], 'Lobby 2!', 'Not allowed here: space "!". Use letters and digits, at most 8 characters'],
  ['ValidarCadena', ['8', 'numeros+caracteres'], 'ABCDEFGHI', 'Use at most 8 characters'],
  ['ValidarNombrecanal', ['7'], 'CAM-N', null],
  ['ValidarNombrecanal', ['7'], 'Ñandú 1', null],
  ['ValidarNombrecanal', ['7'], 'CAM_N', 'A channel name cannot contain "_"; use at most 7 characters'],
  ['ValidarNombrecanal', ['7'], 'CAMERA-N', 'A channel name has at most 7 characters'],
];

describe('checks the page templates offer, on a field of the page', () => {
  test('each accepts or refuses with its message, and never changes the value', () =>
    enRuta('sin-pagina', { ruta: 'transport' }, async (pagina) => {
      for (const [funcion, argumentos, valor, mensaje] of SIN_PAGINA) {
        const resultado = await campo(pagina, 'cnam1_010_000_000_021').evaluate((el, { funcion, argumentos, valor }) => {
          el.value = valor;
          const args = argumentos.map((a) => (a === 'numeros+caracteres' ? window.numeros + window.caracteres : a));
          const aceptado = window[funcion](el, ...args);
          const siguiente = el.nextElementSibling;
          return {
            aceptado,
            valor: el.value,
            rechazado: el.classList.contains('campo-rechazado'),
            mensaje: siguiente?.matches('span.mensaje-rechazo') ? siguiente.textContent : null,
          };
        }, { funcion, argumentos, valor });
        assert.deepEqual(resultado, { aceptado: mensaje === null, valor, rechazado: mensaje !== null, mensaje },
          `${funcion}(${argumentos.join(', ')}) on "${valor}"`);
      }
    }));

  test('a channel name field keeps "_" out when the operator types it', () =>
    enRuta('sin-pagina-subrayado', { ruta: 'transport' }, async (pagina) => {
      const c = campo(pagina, 'cnam1_010_000_000_021');
      await c.evaluate((el) => el.setAttribute('onkeypress', 'return FiltraSubrayadokeypress(event,this);'));
      await c.fill('');
      await c.pressSequentially('A_B-1');
      assert.equal(await c.inputValue(), 'AB-1');
    }));
});
