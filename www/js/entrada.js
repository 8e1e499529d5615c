// entrada.js: the encoder input page (and the input section of a unit's advanced page).
// Every encoder input of a unit is one line of controls named <key><input><suffix>; what
// the operator changes on a line (its enable box, its video or audio connector, its audio
// codec, its video codec or resolution limit) enables, disables or re-offers the other
// controls of that line exactly as the CGI paints a line stored with the new values.
// The network page's DHCP box is here too: it locks the unit's address fields.
'use strict';

(() => {
  // A line control's name: key, input number (one digit), unit suffix ("" for the master,
  // "_aaa_bbb_ccc_ddd" for another unit, "_tot" on the advanced page).
  const NOMBRE_LINEA = /^([a-z]+)(\d)((?:_\d{3}_\d{3}_\d{3}_\d{3})|_tot)?$/;
  const CLAVES_LINEA = ['vidinp', 'vidcod', 'ffencod', 'vidbit', 'maxoutres', 'asprat', 'gop',
    'audinp', 'audcod', 'audbit', 'audlev', 'ccon'];

  const VIDEO_HDMI = '1';
  const AUDIO_ANALOGICO = '0';
  const AUDIOS_HDMI = [['3', 'HDMI 48 kHz'], ['4', 'HDMI 44,1 kHz']];
  const RESOLUCION_PHR = '256';
  const CODEC_MPEG2 = '0';
  // Documents older than the codec extension offer two video codecs and no Field/Frame.
  const CODECS_ANTIGUOS = 2;

  function partes(control) {
    const m = NOMBRE_LINEA.exec(control?.name ?? '');
    return m ? { clave: m[1], n: m[2], sufijo: m[3] ?? '' } : null;
  }

  const raizDe = (control) => control.closest('#contenido') ?? document;
  const porNombre = (raiz, nombre) => raiz.querySelector(`[name="${nombre}"]`);

  // The visible controls of input n of the unit with `sufijo`, by key.
  function lineaDe(raiz, n, sufijo) {
    const linea = {};
    for (const clave of ['eon', ...CLAVES_LINEA]) {
      const control = porNombre(raiz, `${clave}${n}${sufijo}`);
      if (control && control.type !== 'hidden') linea[clave] = control;
    }
    return linea;
  }

  // The unit's lines: every input number found for its enable boxes.
  function lineasDeUnidad(raiz, sufijo) {
    const lineas = [];
    for (let n = 1; n <= 9; n++) {
      const linea = lineaDe(raiz, n, sufijo);
      if (linea.eon) lineas.push(linea);
    }
    return lineas;
  }

  // What the model and the document allow, learnt from the unit as the CGI painted it (the
  // first time a handler runs for the unit, before any state is changed):
  //  - a model with one kind of video connector has its video input fixed;
  //  - documents of the new version offer all the video codecs and Field/Frame;
  //  - the resolution limit is offered when the model has a resolution mask and the
  //    document holds the limit (an input painted on with the select off says it does not);
  //  - the HDMI audio connectors, offered only with HDMI video.
  const modelos = new Map();

  function modeloDe(raiz, sufijo) {
    const clave = `${raiz === document ? '' : 'c'}${sufijo}`;
    const guardado = modelos.get(clave);
    const lineas = lineasDeUnidad(raiz, sufijo);
    if (guardado && lineas[0]?.eon === guardado.caja) return guardado;
    const primera = lineas[0] ?? {};
    const opciones = (control) => (control ? [...control.options].map((o) => [o.value, o.text]) : []);
    const conMascaraResolucion = opciones(primera.maxoutres).length > 1;
    let resolucionLeida = null;
    let audiosHDMI = null;
    for (const linea of lineas) {
      if (linea.eon.checked && linea.maxoutres && conMascaraResolucion)
        resolucionLeida = resolucionLeida || !linea.maxoutres.disabled;
      if (linea.maxoutres && linea.maxoutres.value !== '0') resolucionLeida = true;
      // The video input as painted (the operator may have changed it already).
      const videoPintado = [...(linea.vidinp?.options ?? [])].find((o) => o.defaultSelected)?.value;
      if (videoPintado === VIDEO_HDMI && linea.audinp)
        audiosHDMI = opciones(linea.audinp).filter(([v]) => AUDIOS_HDMI.some(([h]) => h === v));
    }
    const codecs = opciones(primera.vidcod).length;
    const modelo = {
      caja: primera.eon,
      videoFijo: opciones(primera.vidinp).length === 1,
      versionNueva: codecs > CODECS_ANTIGUOS,
      conMascaraResolucion,
      // Nothing painted says whether the document holds the limit: documents of the new
      // version do.
      resolucionLeida: resolucionLeida ?? codecs > CODECS_ANTIGUOS,
      // Every model with an HDMI video connector also takes HDMI audio.
      audiosHDMI: audiosHDMI ?? AUDIOS_HDMI,
    };
    modelos.set(clave, modelo);
    return modelo;
  }

  // The audio connectors offered with the line's video input: the HDMI ones only with HDMI
  // video. A chosen HDMI connector that is no longer offered falls back to the first one.
  function ofreceAudios(linea, modelo) {
    const audio = linea.audinp;
    if (!audio) return;
    const conHDMI = linea.vidinp?.value === VIDEO_HDMI;
    const elegido = audio.value;
    for (const opcion of [...audio.options])
      if (AUDIOS_HDMI.some(([v]) => v === opcion.value)) opcion.remove();
    if (conHDMI)
      for (const [valor, texto] of modelo.audiosHDMI) audio.add(new Option(texto, valor));
    const sigue = [...audio.options].some((o) => o.value === elegido);
    audio.value = sigue ? elegido : audio.options[0]?.value ?? '';
  }

  // Enables and disables the line's controls as the CGI paints a line with these values.
  function aplicaLinea(linea, modelo) {
    const encendida = Boolean(linea.eon?.checked);
    const fija = (control, apagado) => { if (control) control.disabled = !encendida || apagado; };
    const phrMPEG2 = modelo.resolucionLeida && linea.maxoutres?.value === RESOLUCION_PHR &&
      linea.vidcod?.value === CODEC_MPEG2;
    fija(linea.vidinp, modelo.videoFijo);
    fija(linea.vidcod, false);
    fija(linea.ffencod, !modelo.versionNueva || phrMPEG2);
    fija(linea.vidbit, false);
    fija(linea.maxoutres, !modelo.resolucionLeida || !modelo.conMascaraResolucion);
    for (const clave of ['asprat', 'gop', 'audinp', 'audbit', 'audlev', 'ccon']) fija(linea[clave], false);
    fija(linea.audcod, linea.audinp?.value !== AUDIO_ANALOGICO);
  }

  // The line of `control`, with its unit's model; null for a control outside a line.
  function contexto(control) {
    const p = partes(control);
    if (!p) return null;
    const raiz = raizDe(control);
    const modelo = modeloDe(raiz, p.sufijo);
    return { linea: lineaDe(raiz, p.n, p.sufijo), modelo };
  }

  function actualiza(control, { audios = false } = {}) {
    const c = contexto(control);
    if (!c) return;
    if (audios) ofreceAudios(c.linea, c.modelo);
    aplicaLinea(c.linea, c.modelo);
  }

  // An input's enable box: the rest of its line follows it.
  function EnableDisablegroupEntrada(caja) {
    actualiza(caja);
  }

  // The video connector: the audio connectors on offer, and the line's states.
  function CambioVideoInput(seleccion) {
    actualiza(seleccion, { audios: true });
  }

  // The audio connector: the audio codec is chosen only for analog audio.
  function CambioAudioInput(seleccion) {
    actualiza(seleccion);
  }

  // The audio codec: no other control of the line depends on it; the line is kept as the
  // CGI would paint it.
  function CambioAudioCodec(seleccion) {
    actualiza(seleccion);
  }

  // The encoding load of a unit: what its enabled encoders ask (video bit rate in Mbit/s,
  // audio bit rate in kbit/s) against what its output carries, from the output settings
  // the page keeps in hidden fields of the row.
  const BITRATES_AUDIO = [96, 112, 128, 160, 192, 224, 256, 320, 384];
  const CARGA_TS = 188 / 204;  // payload of a transport packet protected by Reed-Solomon
  // Annex B (J.83) cable rates: 64-QAM and 256-QAM, in Mbit/s.
  const QAM_B = { 64: 26.970, 256: 38.810 };
  // DVB-T: 6.75 Msymbol/s of useful carriers in 8 MHz, scaled by the bandwidth.
  const OFDM_BITS = { 0: 2, 1: 4, 2: 6 };
  const OFDM_ANCHOS = { 0: 8, 1: 7, 2: 6 };
  const OFDM_GUARDAS = { 0: 1 / 32, 1: 1 / 16, 2: 1 / 8, 3: 1 / 4 };
  const OFDM_FECS = { 0: 1 / 2, 1: 2 / 3, 2: 3 / 4, 3: 5 / 6, 4: 7 / 8 };
  // Cable QAM modes of the COFDM modulator: bits per symbol.
  const QAM_BITS = { 12: 4, 13: 5, 14: 6, 15: 7, 16: 8 };
  const FAMILIA_QAM = '0';
  const FAMILIA_COFDM = '1';
  const FAMILIA_COFDMQAMB = '3';

  // The output's capacity in Mbit/s, or null when the page does not tell it (an ISDB-T
  // unit). A QAM unit's row carries no modulation: its modulator is judged at 256-QAM
  // Annex B, the largest it offers.
  function capacidad(raiz, sufijo) {
    const oculto = (base) => valorOculto(raiz, `${base}${sufijo}`);
    const familia = valorOculto(raiz, `anteriortipounidad${sufijo}`);
    if (familia === FAMILIA_QAM) return QAM_B[256];
    if (familia !== FAMILIA_COFDM && familia !== FAMILIA_COFDMQAMB) return null;
    const modo = oculto('outmod');
    if (modo in OFDM_BITS) {
      const ancho = OFDM_ANCHOS[oculto('bwsal')];
      const guarda = OFDM_GUARDAS[oculto('ingrd')];
      const fec = OFDM_FECS[oculto('fecsal')];
      if (ancho === undefined || guarda === undefined || fec === undefined) return null;
      return 6.75 * (ancho / 8) * OFDM_BITS[modo] * fec * CARGA_TS / (1 + guarda);
    }
    if (familia === FAMILIA_COFDMQAMB) return modo === '3' ? QAM_B[64] : modo === '4' ? QAM_B[256] : null;
    const baudios = Number(String(oculto('outbau')).replace(',', '.'));
    if (modo in QAM_BITS && baudios > 0) return baudios * QAM_BITS[modo] * CARGA_TS;
    return null;
  }

  const valorOculto = (raiz, nombre) => porNombre(raiz, nombre)?.value;

  function demanda(raiz, sufijo) {
    let total = 0;
    for (const linea of lineasDeUnidad(raiz, sufijo)) {
      if (!linea.eon.checked) continue;
      const video = Number(String(linea.vidbit?.value ?? '0').replace(',', '.'));
      if (Number.isFinite(video)) total += video;
      const audio = BITRATES_AUDIO[Number(linea.audbit?.value)];
      if (audio) total += audio / 1000;
    }
    return total;
  }

  const CLASE_AVISO = 'aviso-codificacion';

  // Shows or clears the warning beside the unit's model (the row's second cell).
  function juzgaUnidad(raiz, sufijo) {
    const caja = lineasDeUnidad(raiz, sufijo)[0]?.eon;
    const fila = caja?.closest('tr');
    if (!fila) return;
    const celda = fila.cells[1] ?? fila.cells[0];
    let aviso = fila.querySelector(`.${CLASE_AVISO}`);
    const puede = capacidad(raiz, sufijo);
    const pide = demanda(raiz, sufijo);
    if (puede === null || pide <= puede) {
      aviso?.remove();
      return;
    }
    if (!aviso) {
      aviso = document.createElement('span');
      aviso.className = CLASE_AVISO;
      aviso.setAttribute('role', 'alert');
      celda.append(aviso);
    }
    aviso.textContent = `The encoders ask ${pide.toFixed(2)} Mbit/s; the output carries ${puede.toFixed(2)} Mbit/s`;
  }

  // A video codec or resolution limit chosen: the Field/Frame choice (none for 1080PHR in
  // MPEG2), and the unit's encoding load.
  function CheckEncoding(control) {
    actualiza(control);
    const p = partes(control);
    if (p) juzgaUnidad(raizDe(control), p.sufijo);
  }

  // The DHCP box of the network page: with DHCP on, the unit takes its address, mask and
  // gateway from the network, so their fields are locked (they keep their values).
  // Row names, and the advanced page's names of the mask and the gateway.
  const CAMPOS_RED = ['networkipdir', 'networkmask', 'gateway', 'lmask', 'lgate'];
  function EnableDisablegroup(caja) {
    const sufijo = /^dhcpcheck(.*)$/.exec(caja?.name ?? '')?.[1];
    if (sufijo === undefined) return;
    const raiz = raizDe(caja);
    for (const base of CAMPOS_RED) {
      const campo = porNombre(raiz, `${base}${sufijo}`);
      if (campo && campo.type !== 'hidden') campo.disabled = caja.checked;
    }
  }

  Object.assign(window, {
    EnableDisablegroupEntrada, CambioVideoInput, CambioAudioInput, CambioAudioCodec, CheckEncoding,
    EnableDisablegroup,
  });
})();
