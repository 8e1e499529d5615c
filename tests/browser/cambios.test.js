// Change tracking and the row for all units on the configuration pages (www/js/cambios.js):
// a changed row is marked and selected, and unmarked when put back; the last row's controls
// copy a value, a tick or a numbering into every unit; the sortable columns reorder the
// units. Every handler these scripts define is one the CGI's markup calls. Nothing of it may
// show a console error.
'use strict';

const fs = require('node:fs');
const path = require('node:path');
const { describe, test } = require('node:test');
const assert = require('node:assert/strict');
const { REPO } = require('./servidor.js');
const banco = require('./banco.js');

const { enRuta } = banco;

const campo = (pagina, nombre) => pagina.locator(`#contenido [name="${nombre}"]`);

// What the operator sees of every unit row: its suffix (from its select box), whether it is
// marked as changed and whether it is selected, and the values of the named controls.
function filas(pagina, ...bases) {
  return pagina.evaluate((bases) => {
    const tabla = document.querySelector('#contenido #tabadatos');
    return [...tabla.rows]
      .filter((tr) => !tr.querySelector(':scope > th') && !tr.querySelector(':scope > td.ultimalinea'))
      .map((tr) => {
        const caja = tr.querySelector('input[type="checkbox"][name^="forzarconfig"]');
        const valores = {};
        const anteriores = {};
        for (const base of bases) {
          const patron = new RegExp(`^${base}\\d*(_\\d{3}_\\d{3}_\\d{3}_\\d{3})?$`);
          // Only the controls the operator can change; disabled lines keep their value.
          const controles = [...tr.querySelectorAll('input[name], select[name]')]
            .filter((c) => c.type !== 'hidden' && !c.disabled && !c.readOnly && patron.test(c.name));
          valores[base] = controles.map((c) => (c.type === 'checkbox' ? c.checked : c.value));
          anteriores[base] = controles.map((c) => tr.querySelector(`input[type="hidden"][name="anterior${c.name}"]`)?.value);
        }
        return {
          sufijo: caja.name.slice('forzarconfig'.length),
          cambiada: tr.classList.contains('fila-cambiada'),
          seleccionada: caja.checked,
          valores,
          anteriores,
        };
      });
  }, bases);
}

async function filaDe(pagina, sufijo) {
  return (await filas(pagina)).find((f) => f.sufijo === sufijo);
}

// How the operator changes a control to `valor`, and puts it back as painted.
async function cambia(pagina, nombre, tipo, valor) {
  const c = campo(pagina, nombre);
  if (tipo === 'checkbox') await c.click();
  else if (tipo === 'select') await c.selectOption(valor);
  else {
    await c.fill(valor);
    await c.blur();
  }
}

async function restaura(pagina, nombre, tipo, pintado) {
  if (tipo === 'checkbox') await campo(pagina, nombre).click();
  else await cambia(pagina, nombre, tipo, pintado);
}

// One control of a unit row per page; `valor` differs from what the page painted.
const CAMBIOS = [
  { ruta: 'network', nombre: 'networkipdir_010_000_000_021', tipo: 'text', valor: '10.0.0.99' },
  { ruta: 'network', nombre: 'orden_010_000_000_101', tipo: 'text', valor: '5' },
  { ruta: 'network', nombre: 'orden', tipo: 'text', valor: '2' },
  { ruta: 'output', nombre: 'outint_010_000_000_105', tipo: 'select', valor: '0' },
  { ruta: 'output', nombre: 'outrfl_010_000_000_105', tipo: 'checkbox' },
  { ruta: 'output', nombre: 'outlev_010_000_000_105', tipo: 'text', valor: '31' },
  { ruta: 'inputs', nombre: 'gop2_010_000_000_021', tipo: 'select', valor: null },
  { ruta: 'inputs', nombre: 'vidbit1_010_000_000_021', tipo: 'text', valor: '20.5' },
  { ruta: 'inputs', nombre: 'ccon1_010_000_000_021', tipo: 'checkbox' },
  { ruta: 'transport', nombre: 'cnam2_010_000_000_021', tipo: 'text', valor: 'CCTV-2' },
  { ruta: 'transport', nombre: 'mchn1_010_000_000_021', tipo: 'text', valor: '80' },
  { ruta: 'transport', nombre: 'svcid1_010_000_000_021', tipo: 'text', valor: '777' },
];

describe('a changed control marks its row and selects it; putting it back unmarks it', () => {
  for (const caso of CAMBIOS) {
    test(`${caso.ruta}: ${caso.nombre}`, () =>
      enRuta(`cambio-${caso.ruta}-${caso.nombre}`, caso, async (pagina) => {
        const sufijo = caso.nombre.match(/(_\d{3}_\d{3}_\d{3}_\d{3})?$/)[0];
        const pintado = await campo(pagina, caso.nombre).evaluate((el) =>
          (el.type === 'checkbox' ? el.checked : el.value));
        let valor = caso.valor;
        if (caso.tipo === 'select' && valor === null)
          valor = await campo(pagina, caso.nombre).evaluate((el) =>
            [...el.options].find((o) => o.value !== el.value).value);
        assert.notEqual(valor, pintado, 'the test changes the value');
        assert.deepEqual(await filaDe(pagina, sufijo), { ...(await filaDe(pagina, sufijo)), cambiada: false, seleccionada: false },
          'the row starts unmarked and unselected');

        await cambia(pagina, caso.nombre, caso.tipo, valor);
        const cambiada = await filaDe(pagina, sufijo);
        assert.equal(cambiada.cambiada, true, 'the row is marked as changed');
        assert.equal(cambiada.seleccionada, true, 'the row is selected');
        const otras = (await filas(pagina)).filter((f) => f.sufijo !== sufijo);
        assert.deepEqual(otras.filter((f) => f.cambiada).map((f) => f.sufijo), [], 'no other row is marked');

        await restaura(pagina, caso.nombre, caso.tipo, pintado);
        const vuelta = await filaDe(pagina, sufijo);
        assert.equal(vuelta.cambiada, false, 'the row is back as painted');
        assert.equal(vuelta.seleccionada, false, 'the box the script ticked is unticked');
      }));
  }

  test('a box the page painted ticked stays ticked when the row is put back', () =>
    enRuta('cambio-caja-pintada', { ruta: 'network' }, async (pagina) => {
      assert.equal((await filaDe(pagina, '_010_000_000_022')).seleccionada, true);
      await cambia(pagina, 'orden_010_000_000_022', 'text', '4');
      assert.equal((await filaDe(pagina, '_010_000_000_022')).cambiada, true);
      await cambia(pagina, 'orden_010_000_000_022', 'text', '3');
      assert.deepEqual(await filaDe(pagina, '_010_000_000_022'),
        { ...(await filaDe(pagina, '_010_000_000_022')), cambiada: false, seleccionada: true });
    }));

  test('a box the operator unticked stays unticked while the row is changed and put back', () =>
    enRuta('cambio-caja-operador', { ruta: 'network' }, async (pagina) => {
      await cambia(pagina, 'orden_010_000_000_021', 'text', '4');
      await campo(pagina, 'forzarconfig_010_000_000_021').click();
      await cambia(pagina, 'networkipdir_010_000_000_021', 'text', '10.0.0.98');
      assert.deepEqual(await filaDe(pagina, '_010_000_000_021'),
        { ...(await filaDe(pagina, '_010_000_000_021')), cambiada: true, seleccionada: false });
      await campo(pagina, 'forzarconfig_010_000_000_021').click();
      await cambia(pagina, 'orden_010_000_000_021', 'text', '99');
      await cambia(pagina, 'networkipdir_010_000_000_021', 'text', '10.0.0.21');
      assert.deepEqual(await filaDe(pagina, '_010_000_000_021'),
        { ...(await filaDe(pagina, '_010_000_000_021')), cambiada: false, seleccionada: true });
    }));

  test('test options: a touched box always counts as a change, even when put back', () =>
    enRuta('cambio-fuerza', { ruta: 'test' }, async (pagina) => {
      await campo(pagina, 'treset_010_000_000_021').click();
      await campo(pagina, 'treset_010_000_000_021').click();
      const fila = await filaDe(pagina, '_010_000_000_021');
      assert.equal(fila.cambiada, true);
      assert.equal(fila.seleccionada, true);
      assert.deepEqual((await filas(pagina)).filter((f) => f.cambiada).map((f) => f.sufijo), ['_010_000_000_021']);
    }));
});

// Selects of the last row: the choice lands in every unit that offers it (every line of a
// unit), and exactly the units whose value differs from what was painted are marked.
const COPIAS = [
  { ruta: 'output', base: 'outint', valor: '0' },
  { ruta: 'output', base: 'outout', valor: '2' },
  { ruta: 'inputs', base: 'gop', valor: null },
  { ruta: 'inputs', base: 'audlev', valor: null },
  { ruta: 'inputs', base: 'asprat', valor: null },
];

describe('a choice in the row for all units is copied into every unit', () => {
  for (const caso of COPIAS) {
    test(`${caso.ruta}: ${caso.base}_all`, () =>
      enRuta(`todas-${caso.ruta}-${caso.base}`, caso, async (pagina) => {
        const todas = campo(pagina, `${caso.base}_all`);
        const valor = caso.valor ?? await todas.evaluate((el) => el.options[1].value);
        assert.equal(await todas.inputValue(), '99', 'the select starts at "Select"');
        const antes = await filas(pagina, caso.base);
        assert.ok(antes.some((f) => f.valores[caso.base].some((v) => v !== valor)), 'some unit has another value');

        await todas.selectOption(valor);
        const despues = await filas(pagina, caso.base);
        assert.ok(despues.filter((f) => f.valores[caso.base].length > 0).length >= 3, 'several units have the control');
        // A disabled control (a unit that cannot take another value) keeps its own.
        const bloqueados = await pagina.evaluate((base) => [...document.querySelectorAll(`#contenido select[name^="${base}"]:disabled`)]
          .filter((c) => !c.name.endsWith('_all')).map((c) => [c.value, document.getElementsByName(`anterior${c.name}`)[0]?.value]), caso.base);
        for (const [valor, pintado] of bloqueados) assert.equal(valor, pintado, 'a disabled control keeps its value');
        for (const fila of despues) {
          assert.ok(fila.valores[caso.base].every((v) => v === valor), `unit ${fila.sufijo || 'master'} took the value`);
          const difiere = fila.anteriores[caso.base].some((v) => v !== valor);
          assert.equal(fila.cambiada, difiere, `unit ${fila.sufijo || 'master'} is marked only if its value changed`);
          if (difiere) assert.equal(fila.seleccionada, true, `unit ${fila.sufijo || 'master'} is selected`);
        }

        // "Select" again leaves every unit as it is now.
        await todas.selectOption('99');
        assert.deepEqual(await filas(pagina, caso.base), despues);
      }));
  }

  test('output: a choice made by clicking the select of the last row copies too', () =>
    enRuta('todas-clic', { ruta: 'output' }, async (pagina) => {
      await campo(pagina, 'outint_all').evaluate((el) => {
        el.value = '3';
        el.click();
      });
      assert.ok((await filas(pagina, 'outint')).every((f) => f.valores.outint.every((v) => v === '3')));
    }));
});

// Check boxes of the last row: every unit's box follows it, and the units are marked when
// the box is one whose change counts.
const CASILLAS = [
  { ruta: 'network', base: 'forzarconfig', caja: 'forzarconf', marca: false },
  { ruta: 'output', base: 'forzarconfig', caja: 'forzarconf', marca: false },
  { ruta: 'output', base: 'outrfl', caja: 'outrfl_all', marca: true },
  { ruta: 'inputs', base: 'ccon', caja: 'ccon_all', marca: true },
  { ruta: 'test', base: 'treset', caja: 'treset_all', marca: true },
  { ruta: 'test', base: 'tfab', caja: 'tfab_all', marca: true },
];

describe('a box of the row for all units ticks or unticks every unit', () => {
  for (const caso of CASILLAS) {
    test(`${caso.ruta}: ${caso.caja}`, () =>
      enRuta(`casilla-${caso.ruta}-${caso.caja}`, caso, async (pagina) => {
        const caja = campo(pagina, caso.caja);
        for (let vez = 0; vez < 2; vez++) {
          await caja.click();
          const marcada = await caja.isChecked();
          const estado = await filas(pagina, caso.base);
          for (const fila of estado) {
            const unidad = fila.sufijo || 'master';
            const cajas = caso.base === 'forzarconfig' ? [fila.seleccionada] : fila.valores[caso.base];
            assert.ok(cajas.length > 0, `unit ${unidad} has the box`);
            assert.ok(cajas.every((v) => v === marcada), `unit ${unidad}: every box is ${marcada ? 'ticked' : 'unticked'}`);
            if (caso.marca && caso.base !== 'treset' && caso.base !== 'tfab') {
              const difiere = fila.anteriores[caso.base].some((v) => v !== (marcada ? '1' : '0'));
              assert.equal(fila.cambiada, difiere, `unit ${unidad} is marked only where its box changed`);
            } else if (caso.marca) {
              assert.equal(fila.cambiada, true, `unit ${unidad} is marked`);
            } else {
              assert.equal(fila.cambiada, false, `unit ${unidad}: selecting is no change`);
            }
          }
        }
      }));
  }
});

// The numbering buttons of the last row, and what they leave in the unit rows, top to bottom.
const NUMERACIONES = [
  { ruta: 'transport', boton: 'autotsid_all', base: 'tsid', esperado: (i) => [String(1 + i)] },
  {
    ruta: 'transport', boton: 'autosvcid_all', base: 'svcid',
    esperado: (i, previas) => previas[i].map((_, k) => String(1 + previas.slice(0, i).flat().length + k)),
  },
  { ruta: 'transport', boton: 'autochnumber_all', base: 'mchn', esperado: (i, previas) => previas[i].map(() => String(2 + i)) },
  { ruta: 'transport', boton: 'autochnumber_all', base: 'chnm', esperado: (i, previas) => previas[i].map((_, k) => String(1 + k)) },
  { rack: 'cofdm', ruta: 'transport', boton: 'autotsid_all', base: 'tsid', esperado: (i) => [(1 + i).toString(16).toUpperCase()] },
  { rack: 'cofdm', ruta: 'transport', boton: 'autoonid_all', base: 'onid', esperado: (i) => [(1 + i).toString(16).toUpperCase()] },
];

describe('the numbering buttons fill consecutive numbers down the units', () => {
  for (const caso of NUMERACIONES) {
    test(`${caso.rack ?? 'qam'} ${caso.ruta}: ${caso.boton} numbers ${caso.base}`, () =>
      enRuta(`numera-${caso.rack ?? 'qam'}-${caso.base}`, caso, async (pagina) => {
        // Sorted first, so the numbering follows the rows as shown, not as painted.
        await pagina.locator('#contenido #tabadatos th a', { hasText: 'Model' }).click();
        const antes = await filas(pagina, caso.base);
        const conCampo = antes.filter((f) => f.valores[caso.base].length > 0);
        assert.ok(conCampo.length >= 3, 'several units have the field');
        await campo(pagina, caso.boton).click();
        const despues = (await filas(pagina, caso.base)).filter((f) => f.valores[caso.base].length > 0);
        assert.deepEqual(despues.map((f) => f.sufijo), conCampo.map((f) => f.sufijo), 'the rows stay where they are');
        const previas = conCampo.map((f) => f.valores[caso.base]);
        for (const [i, fila] of despues.entries()) {
          assert.deepEqual(fila.valores[caso.base], caso.esperado(i, previas), `unit ${fila.sufijo || 'master'}`);
          const difiere = fila.valores[caso.base].some((v, k) => v !== fila.anteriores[caso.base][k]);
          if (difiere) assert.deepEqual([fila.cambiada, fila.seleccionada], [true, true], `unit ${fila.sufijo || 'master'} is marked`);
        }
        assert.deepEqual(await pagina.evaluate(() => window.camposRechazados().map((c) => c.name)), [],
          'every number given is one the field takes');
      }));
  }
});

// Sortable columns: the header that is clicked, the column it sorts, and how to compare.
const ORDENES = [
  { ruta: 'network', cabecera: 'ID', indice: 0, tipo: 'texto' },
  { ruta: 'network', cabecera: 'MAC Address', indice: 3, tipo: 'texto' },
  { ruta: 'output', cabecera: '#', indice: 0, tipo: 'numero' },
  { ruta: 'output', cabecera: 'Model', indice: 1, tipo: 'texto' },
  { ruta: 'transport', cabecera: 'Major CH. #', indice: 6, tipo: 'numero' },
  { ruta: 'quick', cabecera: 'Model', indice: 1, tipo: 'texto', refresca: true },
];

describe('a sortable column reorders the units; the header stays first and the last row last', () => {
  for (const caso of ORDENES) {
    test(`${caso.ruta}: ${caso.cabecera}`, () =>
      enRuta(`orden-${caso.ruta}-${caso.cabecera}`, caso, async (pagina) => {
        const lee = () => pagina.evaluate((indice) => {
          const tabla = document.querySelector('#contenido #tabadatos');
          const rows = [...tabla.rows];
          const clave = (tr) => {
            const celda = tr.cells[indice];
            const control = celda?.querySelector('input:not([type="hidden"]), select');
            return (control ? control.value : celda?.textContent ?? '').replace(/\s+/g, ' ').trim();
          };
          const unidades = rows.filter((tr) => !tr.querySelector(':scope > th') && !tr.querySelector(':scope > td.ultimalinea'));
          return {
            primera: Boolean(rows[0].querySelector(':scope > th')),
            ultima: Boolean(rows.at(-1).querySelector(':scope > td.ultimalinea')),
            claves: unidades.map(clave),
            filas: rows.length,
          };
        }, caso.indice);
        const inicial = await lee();
        const enlace = pagina.locator('#contenido #tabadatos th a', { hasText: caso.cabecera }).first();
        const ordenadas = [...inicial.claves].sort((a, b) => (caso.tipo === 'numero' ? Number(a) - Number(b)
          : a.localeCompare(b, undefined, { numeric: true, sensitivity: 'base' })));
        assert.notDeepEqual(ordenadas, inicial.claves, 'the page is not painted in that order already');

        await enlace.click();
        assert.deepEqual(await lee(), { ...inicial, claves: ordenadas });
        await enlace.click();
        assert.deepEqual(await lee(), { ...inicial, claves: [...ordenadas].reverse() }, 'a second click reverses');
        if (caso.refresca) {
          // The status page comes again from the CGI; the operator's order stays.
          await pagina.evaluate(() => new Promise((listo) => document.addEventListener('paginacargada', listo, { once: true })));
          assert.deepEqual(await lee(), { ...inicial, claves: [...ordenadas].reverse() }, 'the refreshed page keeps the order');
        }
      }));
  }
});

// Every function and global the CGI's markup names in a handler or a javascript: link, on
// every page and operation the golden cases pin, is defined once the shell has loaded.
test('every name the pages call is defined in the browser', () =>
  enRuta('definidos', { ruta: 'network' }, async (pagina) => {
    const casos = path.join(REPO, 'tests', 'golden', 'cases');
    const marcado = fs.readdirSync(casos).flatMap((grupo) => fs.readdirSync(path.join(casos, grupo))
      .filter((f) => f.endsWith('.out')).map((f) => fs.readFileSync(path.join(casos, grupo, f), 'utf8'))).join('\n');
    const codigo = [...marcado.matchAll(/\bon[a-z]+\s*=\s*(?:"([^"]*)"|'([^']*)')|href="javascript:([^"]*)"/g)]
      .map((m) => m[1] ?? m[2] ?? m[3]);
    const reservadas = new Set(['return', 'this', 'event', 'true', 'false', 'null']);
    const nombres = [...new Set(codigo.flatMap((c) => [...c.replace(/'[^']*'|"[^"]*"/g, '').matchAll(/[A-Za-z_]\w*/g)]
      .map((m) => m[0])).filter((n) => !reservadas.has(n)))];
    assert.ok(nombres.length > 30, `the pages name their handlers (${nombres.length} found)`);
    const faltan = await pagina.evaluate((nombres) => nombres.filter((n) => typeof window[n] === 'undefined'), nombres);
    assert.deepEqual(faltan, [], 'names the pages call that no script defines');
  }));
