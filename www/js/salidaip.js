// salidaip.js: the IP input/output page (and the IP section of a unit's advanced page).
// A unit's IP port is Disabled, an Output (the unit sends its streams to multicast groups)
// or an Input (the unit receives streams). Every IP stream is one line of controls named
// <key><line><suffix>; changing the port's mode, the output type (SPTS/MPTS) or a line's
// enable box leaves the line's controls enabled, disabled and filled as the CGI paints a
// unit stored with those values.
'use strict';

(() => {
  const SUFIJO = '((?:_\\d{3}_\\d{3}_\\d{3}_\\d{3})|_tot)?';
  const NOMBRE_UNIDAD = new RegExp(`^(iptxrx|iptype)${SUFIJO}$`);
  const NOMBRE_LINEA = new RegExp(`^([a-zA-Z]+?)(\\d+)${SUFIJO}$`);

  const MODO_DESACTIVADO = '0';
  const MODO_SALIDA = '1';
  const MODO_ENTRADA = '2';
  const TIPO_MPTS = '1';
  const CLAVES_LINEA = ['ipen', 'scanstd', 'serv', 'outputIP', 'outputport', 'ippackets', 'ipproto',
    'ipfecen', 'ipfecannex'];

  const raizDe = (control) => control.closest('#contenido') ?? document;
  const porNombre = (raiz, nombre) => raiz.querySelector(`[name="${nombre}"]`);
  const valorDe = (raiz, nombre, defecto = '') => porNombre(raiz, nombre)?.value ?? defecto;

  function sufijoDe(control) {
    const unidad = NOMBRE_UNIDAD.exec(control?.name ?? '');
    if (unidad) return unidad[2] ?? '';
    const linea = NOMBRE_LINEA.exec(control?.name ?? '');
    return linea && CLAVES_LINEA.includes(linea[1]) ? linea[3] ?? '' : null;
  }

  // What the unit's row says: its mode, its type, its encoder inputs and IP entries, and its
  // lines (the lines the CGI painted: the larger of the two counts).
  function unidadDe(raiz, sufijo) {
    const modo = valorDe(raiz, `iptxrx${sufijo}`, MODO_DESACTIVADO);
    const canales = Number(valorDe(raiz, `anteriornumcanales${sufijo}`, '0'));
    const nentip = Number(valorDe(raiz, `nentip${sufijo}`, '0'));
    const mpts = valorDe(raiz, `iptype${sufijo}`) === TIPO_MPTS;
    const lineas = [];
    for (let i = 1; porNombre(raiz, `outputIP${i}${sufijo}`); i++) {
      const linea = { i };
      for (const clave of CLAVES_LINEA) linea[clave] = porNombre(raiz, `${clave}${i}${sufijo}`);
      lineas.push(linea);
    }
    return { raiz, sufijo, modo, canales, nentip, flujos: mpts ? 1 : canales, lineas };
  }

  // An Output has a line per encoder input, an Input one per IP entry; a disabled port has
  // no line in use.
  function enUso(unidad, i) {
    if (unidad.modo === MODO_SALIDA) return i <= unidad.canales;
    if (unidad.modo === MODO_ENTRADA) return i <= unidad.nentip;
    return false;
  }

  // The enable box of line i, shown only while the line is in use. A box the page did not
  // paint is made, unticked, in the cell's line; a box out of use is hidden with its label
  // and keeps its tick for when the line comes back into use.
  function cajaDe(unidad, linea) {
    const usada = enUso(unidad, linea.i);
    let caja = linea.ipen;
    if (!caja && usada) {
      const celdaModo = porNombre(unidad.raiz, `iptxrx${unidad.sufijo}`)?.closest('td');
      const celdaCajas = celdaModo?.nextElementSibling?.nextElementSibling;
      const div = celdaCajas?.querySelectorAll(':scope > div.divlineadentrodecelda')[linea.i - 1];
      if (div) {
        const nombre = `ipen${linea.i}${unidad.sufijo}`;
        caja = document.createElement('input');
        caja.type = 'checkbox';
        caja.name = nombre;
        caja.id = nombre;
        caja.setAttribute('onclick', 'EnableDisablegroupSalidaIP(this);');
        caja.setAttribute('onblur', 'Compruebacambios(this);');
        caja.setAttribute('onchange', 'Compruebacambios(this);');
        div.replaceChildren(document.createTextNode(String(linea.i)), caja);
        linea.ipen = caja;
      }
    }
    if (caja) {
      const div = caja.closest('div.divlineadentrodecelda') ?? caja.parentElement;
      div.hidden = !usada;
      caja.disabled = !usada;
    }
    return usada ? caja : null;
  }

  // A stream is sent only when there are several of them (SPTS of two or more encoder
  // inputs) or the port receives; an MPTS or single-stream output paints its lines off.
  function aplicaUnidad(unidad) {
    const tipo = porNombre(unidad.raiz, `iptype${unidad.sufijo}`);
    if (tipo && tipo.type !== 'hidden') tipo.disabled = unidad.modo === MODO_ENTRADA;
    const emite = unidad.flujos >= 2 || unidad.modo === MODO_ENTRADA;
    for (const linea of unidad.lineas) {
      const caja = cajaDe(unidad, linea);
      if (caja && !emite && caja.checked) {
        caja.dataset.marcadaAntes = '1';
        caja.checked = false;
      } else if (caja && emite && caja.dataset.marcadaAntes === '1') {
        caja.checked = true;
        delete caja.dataset.marcadaAntes;
      }
      aplicaLinea(unidad, linea, Boolean(caja?.checked) && emite);
    }
  }

  function aplicaLinea(unidad, linea, activa) {
    for (const clave of ['serv', 'outputIP', 'outputport', 'ippackets', 'ipproto', 'ipfecen', 'ipfecannex'])
      if (linea[clave]) linea[clave].disabled = !activa;
    // The stream's standard is chosen only for an output.
    if (linea.scanstd) linea.scanstd.disabled = unidad.modo !== MODO_SALIDA || !activa;
  }

  // The hidden fields that keep each direction's address and port of a line.
  const DIRECCIONES = {
    [MODO_SALIDA]: ['destIP', 'destport'],
    [MODO_ENTRADA]: ['sourceIP', 'sourceport'],
    // A disabled port shows the destination.
    [MODO_DESACTIVADO]: ['destIP', 'destport'],
  };

  // The IP and Port boxes of every line swap to the new direction's values; what the
  // operator typed for the old direction is kept for when it comes back.
  function cambiaDireccion(unidad, anterior) {
    for (const linea of unidad.lineas) {
      const guardar = anterior === MODO_DESACTIVADO ? null : DIRECCIONES[anterior];
      const [ip, puerto] = DIRECCIONES[unidad.modo] ?? DIRECCIONES[MODO_DESACTIVADO];
      const campo = (base) => porNombre(unidad.raiz, `${base}${linea.i}${unidad.sufijo}`);
      if (guardar) {
        if (campo(guardar[0]) && linea.outputIP) campo(guardar[0]).value = linea.outputIP.value;
        if (campo(guardar[1]) && linea.outputport) campo(guardar[1]).value = linea.outputport.value;
      }
      // A disabled port shows what is stored: a line beyond the unit's IP entries has
      // nothing stored.
      const vacia = unidad.modo === MODO_DESACTIVADO && linea.i > unidad.nentip;
      if (linea.outputIP && campo(ip)) linea.outputIP.value = vacia ? '' : campo(ip).value;
      if (linea.outputport && campo(puerto)) linea.outputport.value = vacia ? '' : campo(puerto).value;
    }
  }

  const modosPrevios = new WeakMap();

  function modoPrevio(seleccion) {
    if (modosPrevios.has(seleccion)) return modosPrevios.get(seleccion);
    const raiz = raizDe(seleccion);
    return porNombre(raiz, `anterior${seleccion.name}`)?.value ??
      [...seleccion.options].find((o) => o.defaultSelected)?.value ?? MODO_DESACTIVADO;
  }

  function actualiza(control, alCambiarModo = false) {
    const sufijo = sufijoDe(control);
    if (sufijo === null) return;
    const unidad = unidadDe(raizDe(control), sufijo);
    if (alCambiarModo) {
      const anterior = modoPrevio(control);
      if (anterior !== unidad.modo) cambiaDireccion(unidad, anterior);
      modosPrevios.set(control, unidad.modo);
    }
    aplicaUnidad(unidad);
  }

  // IP MODE: Disabled, Output or Input.
  function CambioTxrxSalidaIP(seleccion) {
    actualiza(seleccion, true);
  }

  // SPTS (one stream per encoder input) or MPTS (one stream).
  function CambioTipoSalidaIP(seleccion) {
    actualiza(seleccion);
  }

  // A line's enable box: the rest of the line follows it.
  function EnableDisablegroupSalidaIP(caja) {
    actualiza(caja);
  }

  // UDP or RTP: the line's controls, FEC ones included, stay as the CGI paints them for
  // either protocol.
  function CambioProtocolSalidaIP(seleccion) {
    actualiza(seleccion);
  }

  // The FEC box: its annex stays as the CGI paints it (it follows the line, not the box).
  function EnableDisableFECSalidaIP(caja) {
    actualiza(caja);
  }

  Object.assign(window, {
    CambioTxrxSalidaIP, CambioTipoSalidaIP, EnableDisablegroupSalidaIP, CambioProtocolSalidaIP,
    EnableDisableFECSalidaIP,
  });
})();
