; Hushvane Loft 120, deutsch
; Made by scripts/make-installation. The program writes the sections VisibleGraph and GraphPoints
; back at its close, with the colours, axes and visible curves that the user chose.

[NabtoSection]
DF_HPM_SNUM=0
DF_HPM_SETPKTNUM=900
Enabled=false
DebugLog=false
DF_FDCountNum=0
ErrorLogOffset=0
NabtoErrorlogEnable=false

; Poll questions: obj; command; address; length. Command 3 reads setpoints, 4 datapoints. Their order
; is the order of the values in a data line; the first value has structnumber 3.
[NabtoDevice]
Poll1=0;3;100;12;
Poll2=0;3;130;10;
Poll3=0;4;0;12;
Poll4=0;4;20;6;

; Devices: Enable first, then questions: device number; function; address; count; list section.
; Function 3 lists are setpoints, which setpoint files hold; the others are readings and service values.
[Device Loft 120]
Enable=true
R1=31;3;100;12;List operation;
R2=31;3;130;10;List climate;
R3=31;4;0;12;List measured;
R4=31;4;20;6;List status;
W1=31;16;100;12;List operation;
W2=31;16;130;10;List climate;

; List rows: name; EEadr; Min; Max; Decimal; Offset; ModbusAdr; structnumber; Enhed; bit names; User2;
; User3; User4; write type; group (0: shown nowhere); -; -; help number. Limits are raw values.
[List operation]
P101=101 Betriebsart;100;0;7;0;0;40101;3;7;;;;;0;Betrieb;;;101;
P102=102 Lüfterstufe von Hand;101;0;4;0;0;40102;4;10;;;;;0;Betrieb;;;102;
P103=103 Dauer der Stoßlüftung;102;5;120;0;0;40103;5;9;;;;;0;Betrieb;;;103;
P104=104 Richtungswechsel nach;103;2;18;-1;0;40104;6;11;;;;;0;Betrieb;;;104;
P105=105 Ventilator, Stufe 1;104;100;1000;1;0;40105;7;2;;;;;0;Betrieb;;;105;
P106=106 Ventilator, Stufe 2;105;100;1000;1;0;40106;8;2;;;;;0;Betrieb;;;106;
P107=107 Ventilator, Stufe 3;106;100;1000;1;0;40107;9;2;;;;;0;Betrieb;;;107;
P108=108 Ventilator, Stufe 4;107;100;1000;1;0;40108;10;2;;;;;0;Betrieb;;;108;
P109=109 Nachtbetrieb beginnt;108;0;239;1;0;40109;11;8;;;;;0;Betrieb;;;109;
P110=110 Nachtbetrieb endet;109;0;239;1;0;40110;12;8;;;;;0;Betrieb;;;110;
P111=111 Filterwechsel alle;110;30;365;0;0;40111;13;18;;;;;0;Betrieb;;;111;
P112=112 Raumkennung (zwei Zeichen);111;0;65535;0;0;40112;14;103;;;;;0;Betrieb;;;112;

[List climate]
P201=201 Raumtemperatur;130;100;300;1;0;40131;15;1;;;;;0;Raumklima;;;201;
P202=202 Korrektur des Raumfühlers;131;-50;50;1;0;40132;16;14;;;;;0;Raumklima;;;202;
P203=203 Frostschutz beginnt;132;0;60;0;-30;40133;17;1;;;;;0;Raumklima;;;203;
P204=204 Feuchte im Raum;133;200;900;1;0;40134;18;13;;;;;0;Raumklima;;;204;
P205=205 Feuchtegrenze für Stoßlüftung;134;300;950;1;0;40135;19;13;;;;;0;Raumklima;;;205;
P206=206 CO2 im Raum;135;400;2000;0;0;40136;20;12;;;;;0;Raumklima;;;206;
P207=207 CO2-Grenze für Stoßlüftung;136;600;5000;0;0;40137;21;12;;;;;0;Raumklima;;;207;
P208=208 Sommerbetrieb oberhalb von;137;100;300;1;0;40138;22;1;;;;;0;Raumklima;;;208;
P209=209 Bedarfsregelung (0 aus, 1 ein);138;0;1;0;0;40139;23;0;;;;;0;Raumklima;;;209;
P210=210 Reserviert 210;139;0;65535;0;0;40140;24;0;;;;;0;0;;;210;

[List measured]
P301=301 Außenluft;0;-400;600;1;0;30001;25;1;;;;;0;Messwerte;;;301;
P302=302 Zuluft;1;-400;900;1;0;30002;26;1;;;;;0;Messwerte;;;302;
P303=303 Raum;2;0;500;1;0;30003;27;1;;;;;0;Messwerte;;;303;
P304=304 Wärmespeicher;3;-400;900;1;0;30004;28;1;;;;;0;Messwerte;;;304;
P305=305 Feuchte;4;0;1000;1;0;30005;29;13;;;;;0;Messwerte;;;305;
P306=306 CO2;5;0;5000;0;0;30006;30;12;;;;;0;Messwerte;;;306;
P307=307 Drehzahl;6;0;5000;0;0;30007;31;5;;;;;0;Messwerte;;;307;
P308=308 Ausgang Ventilator;7;0;1000;1;0;30008;32;2;;;;;0;Messwerte;;;308;
P309=309 Druck am Filter;8;0;500;0;0;30009;33;3;;;;;0;Messwerte;;;309;
P310=310 Leistung;9;0;500;1;0;30010;34;15;;;;;0;Messwerte;;;310;
P311=311 Versorgungsspannung;10;0;300;1;0;30011;35;6;;;;;0;Messwerte;;;311;
P312=312 Temperatur des Reglers;11;0;1500;1;-400;30012;36;1;;;;;0;Messwerte;;;312;

[List status]
P401=401 Status;20;0;511;0;0;30021;37;100;Nu,Nu,Nu,Nu,Nu,Nu,Nu,Netz,Läuft,Auto,Stoß,Nacht,Umkehr,Frost,Filter,Alarm;;;;0;Status;;;401;
P402=402 Wirksame Lüfterstufe;21;0;4;0;0;30022;38;10;;;;;0;Status;;;402;
P403=403 Betriebszeit;22;0;65535;0;0;30023;39;8;;;;;0;Status;;;403;
P404=404 Filter in Gebrauch seit;23;0;4380;0;0;30024;40;101;;;;;0;Status;;;404;
P405=405 Baureihe (zwei Zeichen);24;0;65535;0;0;30025;41;102;;;;;0;Status;;;405;
P406=406 Letzte Fehlernummer;25;0;63;0;0;30026;42;0;;;;;0;Status;;;406;

; Curves: name; axis; colour; structnumber; Offset; Decimal; type; bit names; -; -; -; -; 1: on the graph.
; Types: 100 bits, below 200 signed, from 200 on unsigned.
[GraphPoints]
Graph1=Außenluft;1;$00E06020;25;0;1;150;;;;;;1;
Graph2=Zuluft;1;$0000A0E0;26;0;1;150;;;;;;1;
Graph3=Raum;1;$0080C080;27;0;1;150;;;;;;1;
Graph4=Feuchte;1;$00FFC000;29;0;1;200;;;;;;1;
Graph5=CO2;2;$000000C0;30;0;0;250;;;;;;1;
Graph6=Drehzahl;2;$00FF0060;31;0;0;250;;;;;;1;
Graph7=Druck am Filter;2;$00A040C0;33;0;0;250;;;;;;1;
Graph8=Status;2;clMedGray;37;0;0;100;Nu,Nu,Nu,Nu,Nu,Nu,Nu,Netz,Läuft,Auto,Stoß,Nacht,Umkehr,Frost,Filter,Alarm;;;;;1;
Graph9=Lüfterstufe;3;clTeal;38;0;0;250;;;;;;1;

[VisibleGraph]
graph 0=true
graph 1=true
graph 2=true
graph 3=false
graph 4=true
graph 5=true
graph 6=false
graph 7=false
graph 8=false
