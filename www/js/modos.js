// modos.js: the output pages' mode and channel-table swaps. When the operator changes a
// unit's channel table or its modulation, the row's dependent cells are painted again as
// the CGI paints them for that table or mode: the channel widget of the table, the
// frequency step of the plan and mode, the OFDM-only settings, the baud rate, the
// interleaver, and the plans and transmission modes a mode offers. The cells come from TABLAS (js/tablas.js, written by the build from the
// CGI's own tables): a fragment holds "@N@" for the control's name and "@V@" for its value.
// Names, ids and "anterior" twins stay those the CGI gives, so Compruebacambios (called by
// the same onchange, after these) keeps tracking the row.
'use strict';

(function () {
  const ESCAPES = { '&': '&amp;', '<': '&lt;', '>': '&gt;', '"': '&quot;', "'": '&#39;' };
  const escapa = (texto) => String(texto).replace(/[&<>"']/g, (c) => ESCAPES[c]);

  // The suffix of a row's control named base + suffix.
  const sufijoDe = (control, base) => (control.name.startsWith(base) ? control.name.slice(base.length) : '');

  // A number read as the CGI reads it (leading blanks and a sign allowed, reading stops at the
  // first non-digit); `defecto` when there are no digits.
  function numero(texto, defecto) {
    const m = /^\s*([+-]?\d+)/.exec(String(texto));
    return m ? Number.parseInt(m[1], 10) : defecto;
  }

  // The first n characters of a stored text.
  const corta = (texto, n) => Array.from(String(texto)).slice(0, n).join('');
  const tieneDecimales = (texto) => /[,.]/.test(texto);

  function controlDe(fila, nombre) {
    return (fila || document).querySelector(`[name="${CSS.escape(nombre)}"]`);
  }

  // Fills a fragment into `div` for the control `nombre` holding `valor`; the select named so
  // shows `valor` chosen the way the CGI marks it.
  function pinta(div, fragmento, nombre, valor) {
    if (!div) return;
    div.innerHTML = fragmento.split('@N@').join(nombre).split('@V@').join(escapa(valor));
    for (const select of div.querySelectorAll('select')) {
      if (select.name !== nombre) continue;
      for (const opcion of select.options) opcion.defaultSelected = opcion.value === String(valor);
      const elegida = [...select.options].findIndex((opcion) => opcion.defaultSelected);
      select.selectedIndex = elegida >= 0 ? elegida : (select.options.length ? 0 : -1);
    }
  }

  // ---- QAM output row ------------------------------------------------------

  // Annex A modes (16A..1024A) begin with "2" or above, Annex B (256B, 64B) with 0 or 1.
  const esAnexoA = (modo) => String(modo).length > 0 && String(modo)[0] >= '2';

  function CambioTablaCanalesSalida(control) {
    const sufijo = sufijoDe(control, 'outtab');
    const fila = control.closest('tr');
    const tabla = numero(control.value, 0);
    const widgets = TABLAS.qam.widgetsCanal;
    const widget = widgets.find((w) => w.tabla === tabla) || widgets[0];
    const nombre = `outchn${sufijo}`;
    const actual = controlDe(fila, nombre);
    const canal = actual ? actual.value : '';
    const corte = widget.clase === 'frecuencia' && !tieneDecimales(canal) ? TABLAS.qam.corteFrecuenciaEntera : widget.corte;
    pinta(document.getElementById(`div${sufijo}`), widget.html, nombre, corta(canal, corte));
  }

  // The baud rate is chosen only in Annex A; the interleaver only in Annex B.
  function CambioModoQAM(control) {
    const sufijo = sufijoDe(control, 'outmod');
    const fila = control.closest('tr');
    const anexoA = esAnexoA(control.value);
    const baudios = controlDe(fila, `outbau${sufijo}`);
    if (baudios) baudios.disabled = !anexoA;
    const interleaving = controlDe(fila, `outint${sufijo}`);
    if (interleaving) interleaving.disabled = anexoA;
  }

  // The same swap under the name the QAM mode select of older pages calls.
  function CambioModoSalidaSalida(control) {
    CambioModoQAM(control);
  }

  // ---- COFDM output row ----------------------------------------------------

  const cofdm = () => TABLAS.cofdm;

  // The mode as the CGI paints it: 0..2 (OFDM) and 12..16 (QAM) as they are, else 0.
  function esModoQAM(valor) {
    const modo = numero(valor, -1);
    return modo >= cofdm().primerModoQAM && modo <= cofdm().ultimoModoQAM;
  }

  // A plan the row's select offers (the select holds only the plans of the unit's family and
  // mode); any other value gets plan 0's typed frequency.
  function planDe(valor) {
    const plan = numero(valor, -1);
    return plan >= 0 && plan < cofdm().canales.length ? plan : 0;
  }

  // The channel position a stored channel selects in a plan: in range, else position 0.
  function canalSeleccionado(plan, canal) {
    const posicion = numero(canal, 0);
    const cuenta = cofdm().planes[plan].etiquetas.length;
    return posicion >= 0 && posicion < cuenta ? posicion : 0;
  }

  function pintaPaso(fila, sufijo, plan, modoQAM) {
    const nombre = `frecstep${sufijo}`;
    const div = document.getElementById(`divfrecstep${sufijo}`);
    if (plan !== 0) {
      pinta(div, cofdm().pasoConPlan, nombre, '');
      return;
    }
    const actual = controlDe(fila, nombre);
    const texto = actual ? actual.value : '';
    const paso = numero(texto, -1);
    // In QAM modes a step the cable signal does not offer shows as the first one.
    const valor = modoQAM && paso >= cofdm().primerPasoFueraQAM ? '0' : (paso >= 0 ? String(paso) : texto);
    pinta(div, modoQAM ? cofdm().pasoQAM : cofdm().pasoOFDM, nombre, valor);
  }

  // The family of a row: its hidden "tipounidad" (on the advanced page, the window's).
  function familiaDe(fila, sufijo) {
    const tipo = controlDe(fila, `tipounidad${sufijo}`) || controlDe(null, `tipounidad${sufijo}`);
    return tipo ? numero(tipo.value, -1) : -1;
  }

  // Whether the row's mode is a cable QAM one: positions 3 and 4 on a COFDM/QAM-B row, the
  // values 12..16 on a COFDM row.
  function modoQAMDeFila(fila, sufijo) {
    const modo = controlDe(fila, `outmod${sufijo}`);
    if (!modo) return false;
    if (familiaDe(fila, sufijo) === TABLAS.cofdmqamb.tipoUnidad) return numero(modo.value, 0) >= TABLAS.cofdmqamb.primerModoQAM;
    return esModoQAM(modo.value);
  }

  // Puts `opciones` ([value, text] pairs) in a select, keeping its value, marked as the CGI
  // marks a stored value, when it is still offered; otherwise nothing is marked and the first
  // one shows, as the CGI paints a value it does not offer. Whether the value was kept.
  function cambiaOpciones(select, opciones) {
    const valor = select.value;
    const sigue = opciones.some(([v]) => v === valor);
    select.replaceChildren(...opciones.map(([v, t]) => new Option(t, v, sigue && v === valor, sigue && v === valor)));
    if (!sigue) select.selectedIndex = opciones.length ? 0 : -1;
    return sigue;
  }

  // The OFDM-only settings show "n/a" (value kept hidden) in QAM modes. A row already painted
  // for this kind of mode keeps its cells, twins included.
  function pintaCamposOFDM(fila, sufijo, modoQAM) {
    const muestra = controlDe(fila, `${cofdm().camposOFDM[0].base}${sufijo}`);
    const eraQAM = muestra ? muestra.type === 'hidden' : false;
    if (eraQAM === modoQAM) return;
    for (const campo of cofdm().camposOFDM) {
      const nombre = `${campo.base}${sufijo}`;
      const actual = controlDe(fila, nombre);
      pinta(document.getElementById(`${campo.div}${sufijo}`), modoQAM ? campo.qam : campo.ofdm, nombre,
        actual ? actual.value : '');
    }
  }

  function CambioTablaCanalesSalidaCOFDM(control) {
    const sufijo = sufijoDe(control, 'outtab');
    const fila = control.closest('tr');
    const plan = planDe(control.value);
    const nombre = `outchn${sufijo}`;
    const actual = controlDe(fila, nombre);
    const canal = actual ? actual.value : '';
    const valor = plan === 0 ? corta(canal, 3) : String(canalSeleccionado(plan, canal));
    pinta(document.getElementById(`divoutchn${sufijo}`), cofdm().canales[plan], nombre, valor);
    pintaPaso(fila, sufijo, plan, modoQAMDeFila(fila, sufijo));
  }

  function CambioModoCOFDM(control) {
    const sufijo = sufijoDe(control, 'outmod');
    const fila = control.closest('tr');
    const modoQAM = esModoQAM(control.value);
    // The baud rate is the cable signal's setting: editable in QAM modes only.
    const baudios = controlDe(fila, `outbau${sufijo}`);
    if (baudios) baudios.disabled = !modoQAM;
    const muestra = controlDe(fila, `${cofdm().camposOFDM[0].base}${sufijo}`);
    const eraQAM = muestra ? muestra.type === 'hidden' : false;
    if (eraQAM === modoQAM) return;
    pintaCamposOFDM(fila, sufijo, modoQAM);
    const tabla = controlDe(fila, `outtab${sufijo}`);
    const plan = tabla ? planDe(tabla.value) : 0;
    if (plan === 0) pintaPaso(fila, sufijo, plan, modoQAM);
  }

  // ---- COFDM/QAM-B output row ----------------------------------------------

  // DVB-T modes offer the COFDM plans, Annex B modes a typed frequency and the cable plans; a
  // plan the new mode does not offer gives way to plan 0. The baud rate stays fixed.
  function CambioModoCOFDMQAMB(control) {
    const sufijo = sufijoDe(control, 'outmod');
    const fila = control.closest('tr');
    const modoQAM = numero(control.value, 0) >= TABLAS.cofdmqamb.primerModoQAM;
    pintaCamposOFDM(fila, sufijo, modoQAM);
    const tabla = controlDe(fila, `outtab${sufijo}`);
    if (!tabla) return;
    const planes = modoQAM ? TABLAS.cofdmqamb.planesAnexoB : TABLAS.cofdmqamb.planesDVBT;
    if (!cambiaOpciones(tabla, planes)) CambioTablaCanalesSalidaCOFDM(tabla);
    else if (planDe(tabla.value) === 0) pintaPaso(fila, sufijo, 0, modoQAM);
  }

  // ---- ISDB-T output row ---------------------------------------------------

  const isdbt = () => TABLAS.isdbt;

  // The Broadcast plan's channels fix the step ("n/a", the value kept hidden); a typed
  // frequency offers every step.
  function pintaPasoISDBT(fila, sufijo, plan) {
    const nombre = `frecstep${sufijo}`;
    const actual = controlDe(fila, nombre);
    pinta(document.getElementById(`divfrecstep${sufijo}`),
      plan === isdbt().planBroadcast ? isdbt().noAplicable : isdbt().pasos, nombre, actual ? actual.value : '');
  }

  function CambioTablaCanalesSalidaISDBT(control) {
    const sufijo = sufijoDe(control, 'outtab');
    const fila = control.closest('tr');
    const plan = numero(control.value, 0) === isdbt().planBroadcast ? isdbt().planBroadcast : 0;
    const nombre = `outchn${sufijo}`;
    const actual = controlDe(fila, nombre);
    const canal = actual ? actual.value : '';
    const valor = plan === 0 ? corta(canal, 3) : String(canalSeleccionado(plan, canal));
    pinta(document.getElementById(`divoutchn${sufijo}`), cofdm().canales[plan], nombre, valor);
    pintaPasoISDBT(fila, sufijo, plan);
  }

  // ISDB-T modes offer three transmission modes and the time interleaving; DVB-T modes have
  // no 4K mode and no time interleaving ("n/a", the value kept hidden).
  function CambioModoISDBT(control) {
    const sufijo = sufijoDe(control, 'outmod');
    const fila = control.closest('tr');
    const modoISDBT = numero(control.value, 0) <= isdbt().ultimoModoISDBT;
    const ofdm = controlDe(fila, `outofdm${sufijo}`);
    if (ofdm) cambiaOpciones(ofdm, modoISDBT ? isdbt().ofdmISDBT : isdbt().ofdmCOFDM);
    const nombre = `outint${sufijo}`;
    const actual = controlDe(fila, nombre);
    const eraISDBT = actual ? actual.tagName === 'SELECT' : !modoISDBT;
    if (eraISDBT !== modoISDBT) {
      pinta(document.getElementById(`divinterleaving${sufijo}`), modoISDBT ? isdbt().interleaving : isdbt().noAplicable,
        nombre, actual ? actual.value : '');
    }
  }

  // The ATSC virtual-channel table of a service line: its major number takes the range of
  // the new table, and "CVCT 1" shows the major and minor as one number,
  // ((major AND 15) << 10) + (minor AND 1023), as the CGI paints it; leaving it splits the
  // number back into its two parts.
  function CambioTableTypeCHNum(select) {
    const resto = select.name.slice('autochan'.length);
    const mayor = document.getElementsByName(`mchn${resto}`)[0];
    const menor = document.getElementsByName(`chnm${resto}`)[0];
    const rangos = TABLAS.qam.rangosMayor;
    const rangoDe = (tipo) => rangos.find((r) => r.tipo === tipo) ?? rangos[0];
    const anterior = document.getElementById(`anterior${select.name}`);
    const previo = rangoDe(select.dataset.tipoPrevio ?? anterior?.value ?? select.value);
    const nuevo = rangoDe(select.value);
    select.dataset.tipoPrevio = select.value;
    if (!mayor || !menor || previo === nuevo) return;
    const numero = (campo) => Number.parseInt(campo.value, 10) || 0;
    if (!previo.unaParte && nuevo.unaParte) {
      // The two parts are kept, so that going back untouched gives them as they were.
      select.dataset.partes = JSON.stringify([mayor.value, menor.value]);
      mayor.value = String(((numero(mayor) & 15) << 10) + (numero(menor) & 1023));
      select.dataset.unaParte = mayor.value;
    } else if (previo.unaParte && !nuevo.unaParte) {
      const uno = numero(mayor);
      [mayor.value, menor.value] = select.dataset.partes && select.dataset.unaParte === mayor.value
        ? JSON.parse(select.dataset.partes) : [String((uno >> 10) & 15), String(uno & 1023)];
    }
    const alSalir = mayor.getAttribute('onblur') ?? '';
    mayor.setAttribute('onblur', alSalir.replace(/ValidarEntero\(this,'[^']*','[^']*'\)/,
      `ValidarEntero(this,'${nuevo.minimo}','${nuevo.maximo}')`));
    window.ValidarEntero?.(mayor, String(nuevo.minimo), String(nuevo.maximo));
    window.Compruebacambios?.(mayor);
  }

  Object.assign(window, {
    CambioTablaCanalesSalida, CambioModoQAM, CambioModoSalidaSalida,
    CambioTablaCanalesSalidaCOFDM, CambioModoCOFDM, CambioTableTypeCHNum, CambioModoCOFDMQAMB,
    CambioTablaCanalesSalidaISDBT, CambioModoISDBT,
  });
})();
