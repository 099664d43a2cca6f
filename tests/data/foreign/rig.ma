//Maya ASCII 2022 scene
//Name: rig.ma
//Last modified: Wed, Nov 16, 2022 09:12:40 AM
//Codeset: UTF-8
file -rdi 1 -ns "stage" -rfn "stageRN" -typ "mayaAscii" "room.ma";
file -rdi 1 -ns "far" -rfn "farRN" -typ "mayaAscii" "//no.such.server.invalid/show/far.ma";
file -rdi 1 -ns "away" -rfn "awayRN" -typ "mayaAscii" "\\\\no.such.server.invalid\\show\\away.ma";
file -r -ns "stage" -dr 1 -rfn "stageRN" -typ "mayaAscii" "room.ma";
file -r -ns "far" -dr 1 -rfn "farRN" -typ "mayaAscii" "//no.such.server.invalid/show/far.ma";
file -r -ns "away" -dr 1 -rfn "awayRN" -typ "mayaAscii" "\\\\no.such.server.invalid\\show\\away.ma";
requires maya "2022";
requires -nodeType "notebook" "notes" "0.9";
requires -nodeType "notebook" -dataType "notes" "notes" "1.1";
requires "notes" "3.0 beta";
currentUnit -l centimeter -a degree -t 119.88fps;
dataStructure -fmt "raw" -as "name=table:string=node";
applyMetadata -fmt "raw" -v "channel\nname table\nendChannel\nendAssociations\n" 
		-scn;
createNode transform -n "rig";
	rename -uid "0C3D1F00-0000-2A2B-5C00-000000000071";
	addAttr -ci true -sn "upper" -ln "upper" -max inf -at "double";
	addAttr -ci true -sn "lower" -ln "lower" -min -inf -max 1.#INF -dv nan -at "double";
	addAttr -dcb inf -ci true -sn "odd" -ln "odd" -at "double";
	addAttr -ci true -sn "point" -ln "point" -at "double3" -nc 3;
	addAttr -ci true -sn "pointX" -ln "pointX" -at "doubleLinear" -p "point";
	addAttr -ci true -sn "pointY" -ln "pointY" -at "doubleLinear" -p "point";
	addAttr -ci true -sn "pointZ" -ln "pointZ" -at "doubleLinear" -p "point";
	addAttr -ci true -sn "span" -ln "span" -at "compound" -nc 2;
	addAttr -ci true -sn "from" -ln "from" -at "time" -p "span";
	addAttr -ci true -sn "till" -ln "till" -at "time" -p "span";
	addAttr -ci true -sn "quat" -ln "quat" -at "compound" -nc 2;
	addAttr -ci true -sn "qx" -ln "qx" -at "double" -p "quat";
	addAttr -ci true -sn "qy" -ln "qy" -at "double" -p "quat";
	addAttr -ci true -m -sn "part" -ln "part" -at "compound" -nc 2;
	addAttr -ci true -sn "title" -ln "title" -dt "string" -p "part";
	addAttr -ci true -m -sn "weight" -ln "weight" -at "double" -p "part";
	addAttr -ci true -sn "v" -ln "ownVisibility" -at "bool";
	setAttr ".upper" 7;
	setAttr ".lower" -7;
	setAttr ".odd" 3;
	setAttr ".point" -type "double3" 1 2 3 ;
	setAttr ".from" 12;
	setAttr ".till" 24;
	setAttr ".qx" 0.5;
	setAttr ".part[0].title" -type "string" "one";
	setAttr -s 2 ".part[0].weight[0:1]"  0.1 0.2;
	setAttr -s 2 ".part[4].weight[0:1]"  0.3 0.4;
createNode animCurveTT -n "warp";
	rename -uid "0C3D1F00-0000-2A2B-5C00-000000000072";
	setAttr ".tan" 2;
	setAttr -s 2 ".ktv[0:1]"  1 10 24 20;
createNode animCurveUU -n "driven";
	rename -uid "0C3D1F00-0000-2A2B-5C00-000000000073";
	setAttr ".tan" 2;
	setAttr ".ktv[0]"  1 0.5;
createNode objectSet -n "skinSet";
	rename -uid "0C3D1F00-0000-2A2B-5C00-000000000074";
createNode notebook -n "book";
	rename -uid "0C3D1F00-0000-2A2B-5C00-000000000076";
createNode blinn -n "skin";
	rename -uid "0C3D1F00-0000-2A2B-5C00-000000000075";
select -ne :defaultTextureList1;
	setAttr -s 3 ".tx";
connectAttr "rig.msg" "skinSet.ub[0]";
connectAttr "rig.part[4].weight[1]" "skinSet.gone";
connectAttr "skin.oc" ":initialShadingGroup.ss";
parent "rig" "nobody";
// End of rig.ma
