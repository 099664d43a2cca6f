//Maya ASCII 2018 scene
//Name: prop.ma
requires maya "2018";
requires -nodeType "glossSurface" "lightworks" "4.0.2";
currentUnit -l centimeter -a degree -t ntsc;
createNode transform -n "lamp";
	setAttr ".t" -type "double3" 0 3 0 ;
createNode mesh -n "lampShape" -p "lamp";
	setAttr -k off ".v";
	setAttr -s 4 ".vt[0:3]"  0 0 0 1 0 0 1 0 1 0 0 1;
	setAttr -s 4 ".ed[0:3]"  0 1 0 1 2 0 2 3 0 3 0 0;
	setAttr -ch 4 ".fc[0]" -type "polyFaces" 
		f 4 0 1 2 3;
createNode glossSurface -n "bulb";
	setAttr ".power" 40;
createNode animCurveTL -n "lamp_translateZ";
	setAttr ".tan" 18;
	setAttr -s 2 ".ktv[0:1]"  1 0 31 5;
connectAttr "lamp_translateZ.o" "lamp.tz";
connectAttr "lampShape.iog" ":initialShadingGroup.dsm" -na;
// End of prop.ma
