// cambios.js: change tracking on the configuration pages and the row "Set Configuration for
// all Units". Every editable control of a unit's row has a hidden twin "anterior<name>" with
// the value the page was painted with; a row whose controls differ from their twins is
// marked as changed and its select box ("forzarconfig") is ticked, so Apply sends that unit.
// The controls of the last row copy a value, a tick or a numbering into every unit's row.
'use strict';

(() => {
  const CLASE_CAMBIADA = 'fila-cambiada';
  // The value of a select of the last row that leaves the units as they are.
  const VALOR_SIN_CAMBIO = '99';
  // A unit's suffix: "_" and the four groups of its address (empty for the master).
  const SUFIJO = '(?:_\\d{3}_\\d{3}_\\d{3}_\\d{3})?';

  const escapaRegExp = (texto) => String(texto).replace(/[.*+?^${}()|[\]\\]/g, '\\$&');

  // The data table's row that holds `elemento` (a control may sit in a div inside a cell).
  function filaDe(elemento) {
    let fila = elemento?.closest?.('tr');
    while (fila && fila.closest('table')?.id !== 'tabadatos')
      fila = fila.parentElement?.closest('tr');
    return fila ?? null;
  }

  const esCabecera = (fila) => fila.querySelector(':scope > th') !== null;
  const esUltimaLinea = (fila) => fila.querySelector(':scope > td.ultimalinea') !== null;

  // The unit rows of the data table, in the order they are shown.
  function filasDeUnidades() {
    const tabla = document.getElementById('tabadatos');
    if (!tabla) return [];
    return [...tabla.rows].filter((fila) => !esCabecera(fila) && !esUltimaLinea(fila));
  }

  // A control's value as its twin holds it: check boxes are "1" when ticked, "0" when not.
  function valorDe(control) {
    if (control.type === 'checkbox' || control.type === 'radio') return control.checked ? '1' : '0';
    return control.value;
  }

  function hayDiferencias(fila) {
    const anteriores = new Map();
    for (const oculto of fila.querySelectorAll('input[type="hidden"][name^="anterior"]'))
      anteriores.set(oculto.name, oculto.value);
    for (const control of fila.querySelectorAll('input[name], select[name], textarea[name]')) {
      if (control.type === 'hidden') continue;
      const anterior = anteriores.get(`anterior${control.name}`);
      if (anterior !== undefined && valorDe(control) !== anterior) return true;
    }
    return false;
  }

  function cajaDeSeleccion(fila) {
    return fila.querySelector('input[type="checkbox"][name^="forzarconfig"]');
  }

  // Marks or unmarks the row. The select box is ticked when the row changes; it is unticked
  // when the row is back as painted only if this script ticked it (a box the page painted
  // ticked stays ticked, and a box the operator ticked or unticked is left alone).
  function actualizaFila(fila) {
    const cambiada = fila.dataset.forzada === '1' || hayDiferencias(fila);
    fila.classList.toggle(CLASE_CAMBIADA, cambiada);
    const caja = cajaDeSeleccion(fila);
    if (!caja || caja.dataset.elegidaPorOperador === '1') return;
    if (cambiada && !caja.checked && !caja.disabled) {
      caja.checked = true;
      caja.dataset.marcadaPorCambio = '1';
    } else if (!cambiada && caja.dataset.marcadaPorCambio === '1') {
      caja.checked = false;
      delete caja.dataset.marcadaPorCambio;
    }
  }

  function Compruebacambios(control) {
    const fila = filaDe(control);
    if (fila && !esUltimaLinea(fila)) actualizaFila(fila);
  }

  // A touched control that always counts as a change (the test options: a reset or a
  // factory reset is an order, not a value to compare).
  function Fuerzacambios(control) {
    const fila = filaDe(control);
    if (!fila || esUltimaLinea(fila)) return;
    fila.dataset.forzada = '1';
    actualizaFila(fila);
  }

  // The controls of a unit row named after `base`: base+suffix, or base+line+suffix.
  function controlesDe(fila, base, { porLinea = true } = {}) {
    const patron = new RegExp(`^${escapaRegExp(base)}${porLinea ? '\\d*' : ''}${SUFIJO}$`);
    return [...fila.querySelectorAll('input[name], select[name]')]
      .filter((control) => control.type !== 'hidden' && patron.test(control.name));
  }

  // Runs the control's own checks and the change tracking, as if the operator had set it.
  function avisaCambio(control) {
    control.dispatchEvent(new Event('input', { bubbles: true }));
    control.dispatchEvent(new Event('change', { bubbles: true }));
    if (control.tagName !== 'SELECT' && control.type !== 'checkbox')
      control.dispatchEvent(new FocusEvent('blur'));
    Compruebacambios(control);
  }

  // Copies the value chosen in a select of the last row into the same select of every unit
  // (each of its lines too). A unit whose select is disabled, or that does not offer that
  // value, keeps its own.
  function copiaATodas(seleccion) {
    const valor = seleccion?.value;
    if (valor === undefined || valor === VALOR_SIN_CAMBIO) return;
    const base = seleccion.name.replace(/_all$/, '');
    for (const fila of filasDeUnidades()) {
      for (const control of controlesDe(fila, base)) {
        if (control.tagName !== 'SELECT' || control.disabled) continue;
        if (![...control.options].some((opcion) => opcion.value === valor)) continue;
        if (control.value === valor) continue;
        control.value = valor;
        avisaCambio(control);
      }
    }
  }

  // The markup passes a second argument ("1"); the copy does not need it.
  function CambioVideocodecAll(seleccion) {
    copiaATodas(seleccion);
  }

  // The output mode (NORMAL, CONT_WAVE, INVERTED, MUTE, NULL) of every unit; the second
  // argument ("0") is not needed either.
  function CambioOUTModeQAMAll(seleccion) {
    copiaATodas(seleccion);
  }

  // The markup calls the two functions above on click; a choice made with the keyboard, or
  // one the browser reports only as a change, must copy too.
  const COPIAS = { CambioVideocodecAll, CambioOUTModeQAMAll };
  document.addEventListener('change', (evento) => {
    const control = evento.target;
    if (!(control instanceof HTMLSelectElement) || !/_all$/.test(control.name)) return;
    const llamada = /\b(CambioVideocodecAll|CambioOUTModeQAMAll)\s*\(/.exec(control.getAttribute('onclick') ?? '');
    if (llamada) COPIAS[llamada[1]](control);
  });

  // Ticks or unticks the box named `base` in every unit's row like the last row's box. Each
  // box is clicked, so its own handlers run and its row is marked.
  function SeleccionarChecboxconCheckbox(caja, base) {
    const marcar = Boolean(caja?.checked);
    for (const fila of filasDeUnidades()) {
      for (const control of controlesDe(fila, base)) {
        if (control.type !== 'checkbox' || control.disabled || control.checked === marcar) continue;
        control.click();
      }
    }
  }

  // A tick the operator gives or takes away is the operator's: from then on the box no
  // longer follows the row's changes.
  document.addEventListener('change', (evento) => {
    const control = evento.target;
    if (control instanceof HTMLInputElement && control.type === 'checkbox' && control.name.startsWith('forzarconfig')) {
      delete control.dataset.marcadaPorCambio;
      control.dataset.elegidaPorOperador = '1';
    }
  });

  // Writes a number into a text field: in hexadecimal digits when the field takes hex.
  function escribeNumero(control, numero) {
    const hexa = /ValidarHexa/.test(control.getAttribute('onblur') ?? '');
    const texto = hexa ? numero.toString(16).toUpperCase() : String(numero);
    if (control.value === texto) {
      Compruebacambios(control);
      return;
    }
    control.value = texto;
    avisaCambio(control);
  }

  const editable = (control) => control.type === 'text' && !control.disabled && !control.readOnly;

  // Numbers the field `base` down the units from `inicio` in steps of `paso`: one field per
  // unit, or with `porLinea` "1" every line of every unit in turn.
  function NumeraCampo(base, inicio, paso, porLinea) {
    let numero = Number(inicio);
    const incremento = Number(paso);
    const lineas = String(porLinea) === '1';
    for (const fila of filasDeUnidades()) {
      for (const control of controlesDe(fila, base, { porLinea: lineas }).filter(editable)) {
        escribeNumero(control, numero);
        numero += incremento;
      }
    }
  }

  // Major channel numbers: one per unit (all its channels share it), from `inicio` down the
  // units in steps of `paso`.
  function NumeraMajorChNumber(inicio, paso) {
    let numero = Number(inicio);
    for (const fila of filasDeUnidades()) {
      const campos = controlesDe(fila, 'mchn').filter(editable);
      if (!campos.length) continue;
      for (const control of campos) escribeNumero(control, numero);
      numero += Number(paso);
    }
  }

  // Minor channel numbers: the channels of each unit from `inicio` in steps of `paso`.
  function NumeraMinorChNumber(inicio, paso) {
    for (const fila of filasDeUnidades()) {
      let numero = Number(inicio);
      for (const control of controlesDe(fila, 'chnm').filter(editable)) {
        escribeNumero(control, numero);
        numero += Number(paso);
      }
    }
  }

  // The value a cell is sorted by: its first field's value, or its text.
  function claveDe(celda) {
    const control = celda?.querySelector('input:not([type="hidden"]), select');
    return (control ? control.value : celda?.textContent ?? '').replace(/\s+/g, ' ').trim();
  }

  const NUMERO = /^-?\d+(\.\d+)?$/;
  function compara(a, b) {
    if (NUMERO.test(a) && NUMERO.test(b)) return Number(a) - Number(b);
    if (NUMERO.test(a) !== NUMERO.test(b)) return NUMERO.test(a) ? -1 : 1;
    return a.localeCompare(b, undefined, { numeric: true, sensitivity: 'base' });
  }

  // The cell index of the header whose link sorts by `columna` (the markup's column number
  // is not always the cell's position), or `columna` itself.
  function indiceDeColumna(tabla, columna, tipo) {
    const cabecera = [...tabla.rows].find(esCabecera);
    if (!cabecera) return columna;
    const llamada = new RegExp(`Ordenatabla\\(\\s*${columna}\\s*,\\s*${escapaRegExp(tipo)}\\s*\\)`);
    let indice = 0;
    for (const celda of cabecera.cells) {
      if (llamada.test(celda.querySelector('a[onclick]')?.getAttribute('onclick') ?? '')) return indice;
      indice += celda.colSpan || 1;
    }
    return columna;
  }

  // The cell of `fila` at position `indice`, counting column spans.
  function celdaEn(fila, indice) {
    let posicion = 0;
    for (const celda of fila.cells) {
      if (posicion === indice) return celda;
      posicion += celda.colSpan || 1;
      if (posicion > indice) return null;
    }
    return null;
  }

  // The last sort asked for, so a page that comes again (a status page refreshing) keeps it.
  let ultimoOrden = null;

  function ordena(columna, tipo, descendente) {
    const tabla = document.getElementById('tabadatos');
    if (!tabla) return;
    const unidades = filasDeUnidades();
    if (!unidades.length) return;
    const indice = indiceDeColumna(tabla, columna, tipo);
    const claves = new Map(unidades.map((fila) => [fila, claveDe(celdaEn(fila, indice))]));
    const ordenadas = [...unidades].sort((a, b) => compara(claves.get(a), claves.get(b)) * (descendente ? -1 : 1));
    const cuerpo = unidades[0].parentElement;
    const ultima = [...cuerpo.rows].find(esUltimaLinea) ?? null;
    for (const fila of ordenadas) cuerpo.insertBefore(fila, ultima);
  }

  // Sorts the unit rows by a column; the header stays first and the row for all units last.
  // A second click on the same column sorts the other way.
  function Ordenatabla(columna, tipo) {
    const ruta = document.getElementById('contenido')?.dataset.ruta ?? '';
    const mismo = ultimoOrden && ultimoOrden.ruta === ruta && ultimoOrden.columna === columna &&
      ultimoOrden.tipo === tipo;
    const descendente = mismo ? !ultimoOrden.descendente : false;
    ultimoOrden = { ruta, columna, tipo, descendente };
    ordena(columna, tipo, descendente);
  }

  document.addEventListener('paginacargada', (evento) => {
    if (ultimoOrden && ultimoOrden.ruta === evento.detail?.ruta)
      ordena(ultimoOrden.columna, ultimoOrden.tipo, ultimoOrden.descendente);
    else
      ultimoOrden = null;
  });

  // The sorting links of the pages are href="#": following one would change the route and
  // leave the page, so only their onclick runs.
  document.addEventListener('click', (evento) => {
    const enlace = evento.target instanceof Element ? evento.target.closest('a[href="#"]') : null;
    if (enlace && enlace.closest('#contenido')) evento.preventDefault();
  });

  Object.assign(window, {
    Compruebacambios, Fuerzacambios, SeleccionarChecboxconCheckbox,
    CambioVideocodecAll, CambioOUTModeQAMAll,
    NumeraCampo, NumeraMajorChNumber, NumeraMinorChNumber, Ordenatabla,
  });
})();
