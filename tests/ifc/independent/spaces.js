// spaces.js MODEL...   what web-ifc says about the spaces of models: a line each with the model,
// GlobalId, name, long name, storey, quantities of area, the box and the area of the mesh seen from
// above (metres). --time MODEL: how long opening it and meshing its spaces takes, in milliseconds.
const fs = require('fs');
const path = require('path');
const WebIFC = require('web-ifc');

const text = (value) => (value ? String(value.value) : '');

// The storey of every space, through spaces that it is part of.
function storeysOf(api, model) {
  const parents = new Map();
  const lines = (type) => {
    const ids = api.GetLineIDsWithType(model, type);
    return Array.from({length: ids.size()}, (_, i) => api.GetLine(model, ids.get(i)));
  };
  for (const relation of lines(WebIFC.IFCRELAGGREGATES))
    for (const part of relation.RelatedObjects) parents.set(part.value, relation.RelatingObject.value);
  for (const relation of lines(WebIFC.IFCRELCONTAINEDINSPATIALSTRUCTURE))
    for (const part of relation.RelatedElements)
      if (!parents.has(part.value)) parents.set(part.value, relation.RelatingStructure.value);
  return (space) => {
    for (let id = parents.get(space), links = 0; id !== undefined && links < 100; id = parents.get(id), links++) {
      if (api.GetLineType(model, id) === WebIFC.IFCBUILDINGSTOREY)
        return text(api.GetLine(model, id).Name);
    }
    return '';
  };
}

// Square metres to one unit of area: without a unit for it, that of length squared.
function unitOfArea(api, model) {
  const prefixes = {CENTI: 1e-2, MILLI: 1e-3, KILO: 1e3};
  const factor = (unit, power) => {
    if (unit.ConversionFactor) return api.GetLine(model, unit.ConversionFactor.value).ValueComponent.value;
    return unit.Prefix ? prefixes[unit.Prefix.value] ** power : 1;
  };
  const project = api.GetLine(model, api.GetLineIDsWithType(model, WebIFC.IFCPROJECT).get(0));
  const units = api.GetLine(model, project.UnitsInContext.value).Units.map((unit) => api.GetLine(model, unit.value));
  const named = (name) => units.find((unit) => unit.UnitType && unit.UnitType.value === name);
  const area = named('AREAUNIT');
  return area ? factor(area, 2) : factor(named('LENGTHUNIT'), 1) ** 2;
}

function areasOf(api, model) {
  const unit = unitOfArea(api, model);
  const areas = new Map();
  const ids = api.GetLineIDsWithType(model, WebIFC.IFCRELDEFINESBYPROPERTIES);
  for (let i = 0; i < ids.size(); i++) {
    const relation = api.GetLine(model, ids.get(i));
    const set = relation.RelatingPropertyDefinition.value;
    if (api.GetLineType(model, set) !== WebIFC.IFCELEMENTQUANTITY) continue;
    for (const member of api.GetLine(model, set).Quantities) {
      if (api.GetLineType(model, member.value) !== WebIFC.IFCQUANTITYAREA) continue;
      const quantity = api.GetLine(model, member.value);
      for (const object of relation.RelatedObjects)
        areas.set(object.value, [...(areas.get(object.value) || []), quantity.AreaValue.value * unit]);
    }
  }
  return (space) => areas.get(space) || [];
}

// Box and area of what is seen from above; the mesh stands upright along Y.
function mesh(api, model, space) {
  const shape = api.GetFlatMesh(model, space);
  const box = [Infinity, Infinity, -Infinity, -Infinity];
  let seen = 0;
  for (let g = 0; g < shape.geometries.size(); g++) {
    const placed = shape.geometries.get(g);
    const geometry = api.GetGeometry(model, placed.geometryExpressID);
    const v = api.GetVertexArray(geometry.GetVertexData(), geometry.GetVertexDataSize());
    const index = api.GetIndexArray(geometry.GetIndexData(), geometry.GetIndexDataSize());
    const m = placed.flatTransformation;
    const point = (i) => {
      const [x, y, z] = [v[6 * i], v[6 * i + 1], v[6 * i + 2]];
      return [m[0] * x + m[4] * y + m[8] * z + m[12], -(m[2] * x + m[6] * y + m[10] * z + m[14])];
    };
    for (let t = 0; t + 2 < index.length; t += 3) {
      const [a, b, c] = [point(index[t]), point(index[t + 1]), point(index[t + 2])];
      seen += Math.abs((b[0] - a[0]) * (c[1] - a[1]) - (b[1] - a[1]) * (c[0] - a[0])) / 4;
      for (const [x, y] of [a, b, c]) {
        box[0] = Math.min(box[0], x);
        box[1] = Math.min(box[1], y);
        box[2] = Math.max(box[2], x);
        box[3] = Math.max(box[3], y);
      }
    }
    geometry.delete();
  }
  return {box, seen};
}

function spacesOf(api, model) {
  const ids = api.GetLineIDsWithType(model, WebIFC.IFCSPACE);
  return Array.from({length: ids.size()}, (_, i) => ids.get(i));
}

async function main() {
  const api = new WebIFC.IfcAPI();
  await api.Init();
  api.SetLogLevel(WebIFC.LogLevel.LOG_LEVEL_ERROR);
  const time = process.argv[2] === '--time';
  for (const file of process.argv.slice(time ? 3 : 2)) {
    const bytes = fs.readFileSync(file);
    const begin = performance.now();
    const model = api.OpenModel(bytes, time ? {} : {CIRCLE_SEGMENTS: 200});
    const meshes = spacesOf(api, model).map((space) => [space, mesh(api, model, space)]);
    if (time) {
      console.log((performance.now() - begin).toFixed(3));
      continue;
    }
    const storeyOf = storeysOf(api, model);
    const areas = areasOf(api, model);
    for (const [space, {box, seen}] of meshes) {
      const line = api.GetLine(model, space);
      console.log([path.basename(file, '.ifc'), text(line.GlobalId), text(line.Name), text(line.LongName), storeyOf(space),
        areas(space).join(' '), box.map((value) => (isFinite(value) ? value.toFixed(4) : '-')).join(' '),
        seen.toFixed(4)].join('\t'));
    }
    api.CloseModel(model);
  }
}
main().catch((error) => {
  console.error(error);
  process.exit(1);
});
