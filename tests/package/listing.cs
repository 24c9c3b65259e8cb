// Prints of the C# class its constants, the layout of its structures as 32-bit Windows has it, and the bytes of
// arguments of its calls: "name value" a line, "name@bytes" for a call. A runtime of 64 bits has other pointers, so
// sizes of types are taken from the table below.
using System;
using System.Linq;
using System.Reflection;
using System.Runtime.InteropServices;

static class Listing
{
    const BindingFlags Statics = BindingFlags.Public | BindingFlags.Static | BindingFlags.DeclaredOnly;
    const BindingFlags Fields = BindingFlags.Public | BindingFlags.Instance;

    // Size and alignment.
    static Tuple<int, int> Of(Type type, MarshalAsAttribute marshal = null)
    {
        if (marshal != null && marshal.Value == UnmanagedType.ByValTStr)
            return Tuple.Create(2 * marshal.SizeConst, 2);
        if (type == typeof(bool))
            return Tuple.Create(4, 4);
        if (type == typeof(char))
            return Tuple.Create(2, 2);
        if (type.IsPrimitive && type != typeof(IntPtr) && type != typeof(UIntPtr))
            return Tuple.Create(Marshal.SizeOf(type), Marshal.SizeOf(type));
        return type.IsValueType && !type.IsPrimitive ? Layout(type, null) : Tuple.Create(4, 4);
    }

    static Tuple<int, int> Layout(Type type, Action<string, int> visit)
    {
        int offset = 0, alignment = 1;
        foreach (FieldInfo field in type.GetFields(Fields).OrderBy(field => field.MetadataToken))
        {
            var size = Of(field.FieldType, field.GetCustomAttribute<MarshalAsAttribute>());
            offset = (offset + size.Item2 - 1) / size.Item2 * size.Item2;
            if (visit != null)
                visit(field.Name, offset);
            offset += size.Item1;
            alignment = Math.Max(alignment, size.Item2);
        }
        return Tuple.Create((offset + alignment - 1) / alignment * alignment, alignment);
    }

    static void Main()
    {
        foreach (FieldInfo constant in typeof(TvUT22).GetFields(Statics))
            Console.WriteLine(constant.Name + " " + constant.GetRawConstantValue());
        foreach (Type type in typeof(TvUT22).GetNestedTypes().Where(type => type.IsValueType))
            Console.WriteLine(type.Name + " " +
                Layout(type, (name, offset) => Console.WriteLine(type.Name + "." + name + " " + offset)).Item1);
        foreach (MethodInfo call in typeof(TvUT22).GetMethods(Statics))
            Console.WriteLine(call.Name + "@" +
                call.GetParameters().Sum(parameter => (Of(parameter.ParameterType).Item1 + 3) / 4 * 4) + " ");
    }
}
